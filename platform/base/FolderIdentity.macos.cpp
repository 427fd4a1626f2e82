#include "platform/base/FolderIdentity.hpp"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace platform {

namespace {

FolderIdentity identityFrom(const struct stat& status, const struct statfs& volume) {
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .mount = static_cast<const char*>(volume.f_mntonname)};
}

} // namespace

std::optional<FolderIdentity> identityOf(int folder) {
    struct stat status{};
    struct statfs volume{};
    if (::fstat(folder, &status) != 0 || ::fstatfs(folder, &volume) != 0) {
        return std::nullopt;
    }
    return identityFrom(status, volume);
}

std::optional<FolderIdentity> identityOf(const std::string& path) {
    struct stat status{};
    struct statfs volume{};
    if (::stat(path.c_str(), &status) != 0 || ::statfs(path.c_str(), &volume) != 0) {
        return std::nullopt;
    }
    return identityFrom(status, volume);
}

// By the device alone: statfs would follow a link, and there is no statfs of a name in an open
// folder.
bool isMountPoint(int at, const char* name, const FolderIdentity& folder) {
    struct stat status{};
    return ::fstatat(at, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && status.st_dev != folder.device;
}

} // namespace platform
