#include "platform/base/RemoveTree.hpp"

#include "platform/base/OpenFolder.hpp"
#include "platform/base/UniqueFd.hpp"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

// Folders that are kept open between the top and the one being emptied. A deeper one lets go of
// the topmost, which is opened anew on the way back.
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
    /// The folder that the top stands in may be given by its path alone, as AT_FDCWD and a top that
    /// is the whole path.
    Removal(std::string path, FolderIdentity above, int parent, const std::string& top)
        : path(std::move(path)), above(std::move(above)), parent(parent) {
        remove(parent, top);
    }

    std::optional<RemovalFailure> run() {
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.subfolders.empty()) {
                leave();
            } else {
                const std::string name = std::move(level.subfolders.back());
                level.subfolders.pop_back();
                remove(level.folder.descriptor(), name);
            }
        }
        return std::move(failure);
    }

  private:
    // Empties a folder's level later; anything else goes at once.
    void remove(int at, const std::string& name) {
        OpenFolder folder(at, name.c_str());
        const int whyClosed = folder ? 0 : errno;
        if (folder) {
            enter(std::move(folder), name);
        } else if (whyClosed == ENOTDIR || whyClosed == ELOOP || whyClosed == EMLINK) {
            unlink(at, name, 0);
        } else if (::unlinkat(at, name.c_str(), AT_REMOVEDIR) != 0) {
            // One that may not be read could still have been empty.
            noteAt(at, name, whyClosed);
        }
    }

    // A volume is known by the folder that was opened and not by its name, under which another may
    // stand by now.
    void enter(OpenFolder folder, const std::string& name) {
        auto identity = folder.identity();
        if (!identity) {
            note(errno);
            return;
        }
        if (!identity->isOnVolumeOf(above)) {
            noteMountPoint(name);
            return;
        }
        if (levels.size() >= mostOpen) {
            levels[levels.size() - mostOpen].folder.close();
        }
        levels.push_back({name, std::move(folder), std::move(*identity), {}});
        Level& level = levels.back();
        const int at = level.folder.descriptor();
        // All names first: a folder that shrinks while it is listed may pass some over.
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
        const Level left = std::move(levels.back());
        levels.pop_back();
        if (levels.empty()) {
            unlink(parent, left.name, AT_REMOVEDIR);
            return;
        }
        // One that cannot be reached any more stands elsewhere or nowhere; if it was not taken out
        // of the tree, the folders above it cannot go, and that is told then.
        if (!levels.back().folder && !reopenAbove(left.folder)) {
            levels.back().subfolders.clear();
            return;
        }
        unlink(levels.back().folder.descriptor(), left.name, AT_REMOVEDIR);
    }

    // The way back up may have been moved meanwhile; then the way down is gone over again.
    bool reopenAbove(const OpenFolder& below) {
        Level& upper = levels.back();
        if (below) {
            upper.folder = OpenFolder(below.descriptor(), "..");
        }
        if (upper.folder && upper.folder.identity() == upper.identity) {
            return true;
        }
        upper.folder.close();
        OpenFolder walker;
        int at = parent;
        for (const Level& level : levels) {
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

    // A mount point can be met here too: one of a single file, or a folder that may not be opened
    // or over which the volume was mounted since.
    void noteAt(int at, const std::string& name, int error) {
        if (error != ENOENT && isMountPoint(at, name.c_str(), above)) {
            noteMountPoint(name);
        } else {
            note(error);
        }
    }

    // What is not there any more has gone, by whosever hand.
    void note(int error) {
        if (error != 0 && error != ENOENT && !failure) {
            failure = failureOf(error);
        }
    }

    // A volume is told before all else: it has to be ejected, whatever helps against the rest.
    void noteMountPoint(const std::string& name) {
        if (!failure || failure->mountPoint.empty()) {
            failure = failureOf(EBUSY);
            failure->mountPoint = pathOf(name);
        }
    }

    // Of something in the folder that is being emptied, or of the top itself.
    [[nodiscard]] std::string pathOf(const std::string& name) const {
        std::string whole = path;
        for (std::size_t depth = 1; depth < levels.size(); ++depth) {
            whole.append("/").append(levels[depth].name);
        }
        return levels.empty() ? whole : whole.append("/").append(name);
    }

    const std::string path;
    const FolderIdentity above;
    const int parent;
    std::vector<Level> levels;
    std::optional<RemovalFailure> failure;
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
        const bool isNothing = errno == ENOENT || errno == ENOTDIR;
        return isNothing ? std::nullopt : std::optional(failureOf(errno));
    }
    // A folder that may be searched but not listed cannot be opened; its path still works.
    return parent ? Removal(path, std::move(*above), parent.get(), path.substr(slash + 1)).run()
                  : Removal(path, std::move(*above), AT_FDCWD, path).run();
}

} // namespace platform
