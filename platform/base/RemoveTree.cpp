#include "platform/base/RemoveTree.hpp"

#include "platform/base/OpenFolder.hpp"
#include "platform/base/UniqueFd.hpp"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

// The most folders of the path that are open at once. At a greater depth the topmost of them is
// closed, and opened again on the way back.
constexpr std::size_t mostOpen = 24;

struct Level {
    std::string name;
    OpenFolder folder;
    FolderIdentity identity;
    std::vector<std::string> subfolders;
};

RemovalFailure failureOf(int error) {
    return {{error, std::generic_category()}, {}};
}

class Removal {
  public:
    /// `parent` is the folder that contains the top, or AT_FDCWD if `top` is the whole path.
    Removal(std::string path, FolderIdentity above, int parent, const std::string& top)
        : path_(std::move(path)), above_(std::move(above)), parent_(parent) {
        remove(parent, top);
    }

    std::optional<RemovalFailure> run() {
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.subfolders.empty()) {
                leave();
            } else {
                const std::string name = std::move(level.subfolders.back());
                level.subfolders.pop_back();
                remove(level.folder.descriptor(), name);
            }
        }
        return std::move(failure_);
    }

  private:
    // Pushes a folder onto the levels, for run() to empty; removes anything else at once.
    void remove(int at, const std::string& name) {
        OpenFolder folder(at, name.c_str());
        const int openError = folder ? 0 : errno;
        if (folder) {
            enter(std::move(folder), name);
        } else if (openError == ENOTDIR || openError == ELOOP || openError == EMLINK) {
            unlink(at, name, 0);
        } else if (::unlinkat(at, name.c_str(), AT_REMOVEDIR) != 0) {
            // An empty folder can be removed unread; for any other the reason is that of opening
            // it.
            noteAt(at, name, openError);
        }
    }

    // Checks the open folder and not its name, which may lead to another folder by now.
    void enter(OpenFolder folder, const std::string& name) {
        auto identity = folder.identity();
        if (!identity) {
            note(errno);
            return;
        }
        if (!identity->isOnVolumeOf(above_)) {
            noteMountPoint(name);
            return;
        }
        if (levels_.size() >= mostOpen) {
            levels_[levels_.size() - mostOpen].folder.close();
        }
        levels_.push_back({name, std::move(folder), std::move(*identity), {}});
        Level& level = levels_.back();
        const int at = level.folder.descriptor();
        // Lists all entries before any is removed: readdir may skip some in a folder that changes.
        auto listing = level.folder.entries();
        note(listing.error);
        for (auto& entry : listing.entries) {
            if (entry.kind == OpenFolder::Kind::other) {
                unlink(at, entry.name, 0);
            } else {
                level.subfolders.push_back(std::move(entry.name));
            }
        }
    }

    void leave() {
        const Level left = std::move(levels_.back());
        levels_.pop_back();
        if (levels_.empty()) {
            unlink(parent_, left.name, AT_REMOVEDIR);
            return;
        }
        // If the folder above cannot be reopened, it was moved or removed meanwhile. If it is still
        // in the tree, the removal of the folders above it will fail and be noted.
        if (!levels_.back().folder && !reopenAbove(left.folder)) {
            levels_.back().subfolders.clear();
            return;
        }
        unlink(levels_.back().folder.descriptor(), left.name, AT_REMOVEDIR);
    }

    // Opens the folder above by "..". If the one below was moved meanwhile, ".." is another folder;
    // then the path is followed once more from the top.
    bool reopenAbove(const OpenFolder& below) {
        Level& upper = levels_.back();
        if (below) {
            upper.folder = OpenFolder(below.descriptor(), "..");
        }
        if (upper.folder && upper.folder.identity() == upper.identity) {
            return true;
        }
        upper.folder.close();
        OpenFolder walker;
        int at = parent_;
        for (const Level& level : levels_) {
            walker = OpenFolder(at, level.name.c_str());
            if (!walker || walker.identity() != level.identity) {
                return false;
            }
            at = walker.descriptor();
        }
        upper.folder = std::move(walker);
        return true;
    }

    void unlink(int at, const std::string& name, int flags) {
        if (::unlinkat(at, name.c_str(), flags) != 0) {
            noteAt(at, name, errno);
        }
    }

    // The entry may be a mount point: of a single file, of a folder that may not be opened, or of a
    // folder over which a volume was mounted after it was opened.
    void noteAt(int at, const std::string& name, int error) {
        if (error != ENOENT && isMountPoint(at, name.c_str(), above_)) {
            noteMountPoint(name);
        } else {
            note(error);
        }
    }

    // ENOENT counts as removed: another process may be removing the same tree.
    void note(int error) {
        if (error != 0 && error != ENOENT && !failure_) {
            failure_ = failureOf(error);
        }
    }

    // A mounted volume takes precedence over other reasons: the user has to eject it in any case.
    void noteMountPoint(const std::string& name) {
        if (!failure_ || failure_->mountPoint.empty()) {
            failure_ = failureOf(EBUSY);
            failure_->mountPoint = pathOf(name);
        }
    }

    // The path of an entry of the folder that is being emptied, or of the top itself.
    [[nodiscard]] std::string pathOf(const std::string& name) const {
        std::string whole = path_;
        for (std::size_t depth = 1; depth < levels_.size(); ++depth) {
            whole.append("/").append(levels_[depth].name);
        }
        return levels_.empty() ? whole : whole.append("/").append(name);
    }

    const std::string path_;
    const FolderIdentity above_;
    const int parent_;
    std::vector<Level> levels_;
    std::optional<RemovalFailure> failure_;
};

} // namespace

std::string RemovalFailure::reason() const {
    return mountPoint.empty() ? error.message() : "a volume is mounted at " + mountPoint;
}

std::optional<RemovalFailure> removeTree(const std::string& path) {
    if (!hasNoNul(path)) {
        return failureOf(EINVAL);
    }
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const UniqueFd parent(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    auto above = parent ? identityOf(parent.get()) : identityOf(folder);
    if (!above) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR;
        return isMissing ? std::nullopt : std::optional(failureOf(errno));
    }
    // A folder with search but no read permission cannot be opened; its path still works.
    return parent ? Removal(path, std::move(*above), parent.get(), path.substr(slash + 1)).run()
                  : Removal(path, std::move(*above), AT_FDCWD, path).run();
}

} // namespace platform
