#include "platform/base/FolderIdentity.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace platform {

namespace {

// The mount's ID and not the device alone: a bind mount shows another part of the same device. In
// an overlay all folders have one device, but files have those of their layers, so the device of a
// file says nothing.
std::optional<FolderIdentity> identityAt(int at, const char* path, int flags) {
    struct statx status{};
    if (::statx(at, path, flags | AT_NO_AUTOMOUNT, STATX_INO | STATX_MNT_ID, &status) != 0) {
        return std::nullopt;
    }
    const bool hasMount = (status.stx_mask & STATX_MNT_ID) != 0;
    return FolderIdentity{.device = makedev(status.stx_dev_major, status.stx_dev_minor),
                          .inode = status.stx_ino,
                          .mount = hasMount ? std::to_string(status.stx_mnt_id) : ""};
}

} // namespace

std::optional<FolderIdentity> identityOf(int folder) {
    return identityAt(folder, "", AT_EMPTY_PATH);
}

std::optional<FolderIdentity> identityOf(const std::string& path) {
    return identityAt(AT_FDCWD, path.c_str(), 0);
}

bool isMountPoint(int at, const char* name, const FolderIdentity&) {
    struct statx status{};
    return ::statx(at, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, 0, &status) == 0 &&
           (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

} // namespace platform
