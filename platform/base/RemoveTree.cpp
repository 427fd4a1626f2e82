#include "platform/base/RemoveTree.hpp"

#include "platform/base/FilePath.hpp"
#include "platform/base/OpenFolder.hpp"
#include "platform/base/UniqueFd.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
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

class Removal {
  public:
    Removal(int parent, std::string top) : parent(parent) { remove(parent, std::move(top)); }

    std::error_code run() {
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.subfolders.empty()) {
                leave();
            } else {
                std::string name = std::move(level.subfolders.back());
                level.subfolders.pop_back();
                remove(level.folder.descriptor(), std::move(name));
            }
        }
        return firstFailure;
    }

  private:
    // Empties a folder's level later; anything else goes at once.
    void remove(int at, std::string name) {
        OpenFolder folder(at, name.c_str());
        const int whyClosed = folder ? 0 : errno;
        somethingWasThere |= whyClosed != ENOENT;
        if (folder) {
            enter(std::move(folder), std::move(name));
        } else if (whyClosed == ENOTDIR || whyClosed == ELOOP || whyClosed == EMLINK) {
            unlink(at, name.c_str(), 0);
        } else if (::unlinkat(at, name.c_str(), AT_REMOVEDIR) != 0) {
            // One that may not be read could still have been empty.
            note(whyClosed);
        }
    }

    void enter(OpenFolder folder, std::string name) {
        const FolderIdentity identity = folder.identity();
        if (!levels.empty() && identity.device != levels.front().identity.device) {
            note(EXDEV);
            return;
        }
        if (levels.size() >= mostOpen) {
            levels[levels.size() - mostOpen].folder.close();
        }
        levels.push_back({std::move(name), std::move(folder), identity, {}});
        Level& level = levels.back();
        const int at = level.folder.descriptor();
        // All names first: a folder that shrinks while it is listed may pass some over.
        auto listing = level.folder.entries();
        if (listing.error != 0) {
            note(listing.error);
        }
        for (auto& entry : listing.entries) {
            if (entry.kind == OpenFolder::Kind::other) {
                unlink(at, entry.name.c_str(), 0);
            } else {
                level.subfolders.push_back(std::move(entry.name));
            }
        }
    }

    void leave() {
        Level left = std::move(levels.back());
        levels.pop_back();
        if (levels.empty()) {
            unlink(parent, left.name.c_str(), AT_REMOVEDIR);
            return;
        }
        // One that cannot be reached any more stands elsewhere or nowhere; if it was not taken out
        // of the tree, the folders above it cannot go, and that is told then.
        if (!levels.back().folder && !reopenAbove(left.folder)) {
            levels.back().subfolders.clear();
            return;
        }
        unlink(levels.back().folder.descriptor(), left.name.c_str(), AT_REMOVEDIR);
    }

    // The way back up may have been moved meanwhile; then the way down is gone over again.
    bool reopenAbove(const OpenFolder& below) {
        Level& above = levels.back();
        if (below) {
            above.folder = OpenFolder(below.descriptor(), "..");
        }
        if (above.folder && above.folder.identity() == above.identity) {
            return true;
        }
        above.folder.close();
        OpenFolder walker;
        int at = parent;
        for (const Level& level : levels) {
            walker = OpenFolder(at, level.name.c_str());
            if (!walker || walker.identity() != level.identity) {
                return false;
            }
            at = walker.descriptor();
        }
        above.folder = std::move(walker);
        return true;
    }

    void unlink(int at, const char* name, int flags) {
        if (::unlinkat(at, name, flags) != 0) {
            note(errno);
        }
    }

    // What was there and is not any more has gone, by whosever hand.
    void note(int error) {
        const bool hasGone = error == ENOENT && somethingWasThere;
        if (!hasGone && !firstFailure) {
            firstFailure.assign(error, std::generic_category());
        }
    }

    int parent;
    bool somethingWasThere = false;
    std::vector<Level> levels;
    std::error_code firstFailure;
};

} // namespace

std::error_code removeTree(const std::string& path) {
    if (!isWholePath(path)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const UniqueFd parent(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may be searched but not listed cannot be opened; its path still works.
    return parent ? Removal(parent.get(), path.substr(slash + 1)).run()
                  : Removal(AT_FDCWD, path).run();
}

} // namespace platform
