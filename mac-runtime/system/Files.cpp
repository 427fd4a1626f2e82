#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/FileNumbers.hpp"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

// stat(2) with <sys/stat.h>'s structure of 64-bit inodes, and the calls that change the file at a
// path. unlink(2) of a folder gives EPERM.

namespace mac {

int linuxFolder(int folder) {
    constexpr int darwinsCurrent = -2; // AT_FDCWD
    return folder == darwinsCurrent ? AT_FDCWD : folder;
}

int linuxAtFlags(int flags, const char* function) {
    constexpr NumberPair known[] = {
        {0x20, AT_SYMLINK_NOFOLLOW}, {0x40, AT_SYMLINK_FOLLOW}, {0x80, AT_REMOVEDIR}};
    return linuxFlags(flags, known, function);
}

int linuxFlags(int flags, std::span<const NumberPair> known, const char* function) {
    int result = 0;
    for (const auto& [darwin, ofLinux] : known) {
        if ((flags & darwin) != 0) {
            result |= ofLinux;
            flags &= ~darwin;
        }
    }
    if (flags != 0) {
        fail("%s with the flags %#x, which are not known", function, flags);
    }
    return result;
}

namespace {

struct Time {
    std::int64_t seconds, nanoseconds;
};

struct Status {
    std::int32_t device;
    std::uint16_t mode, linkCount;
    std::uint64_t inode;
    std::uint32_t user, group;
    std::int32_t deviceOfNode, padding;
    Time accessed, modified, changed, born;
    std::int64_t size, blocks;
    std::int32_t blockSize;
    std::uint32_t flags, generation;
    std::int32_t spare;
    std::int64_t moreSpare[2];
};

static_assert(sizeof(Status) == 144);

Time timeOf(const statx_timestamp& time) {
    return {time.tv_sec, time.tv_nsec};
}

// <sys/types.h>: the major number is in the top byte.
std::int32_t deviceOf(std::uint32_t major, std::uint32_t minor) {
    return static_cast<std::int32_t>(major << 24 | (minor & 0xffffff));
}

// The folder that contains the path's target; empty for what is in no folder, such as a pipe.
std::string folderAbove(int at, const char* path, int flags) {
    std::string place = path;
    if (at != AT_FDCWD && !place.starts_with('/')) {
        place = "/proc/self/fd/" + std::to_string(at) + (place.empty() ? "" : "/") + place;
    }
    std::string name;
    if ((flags & AT_SYMLINK_NOFOLLOW) != 0) {
        name = "/" + place.substr(place.rfind('/') + 1);
        place = place.find('/') == std::string::npos ? "." : place.substr(0, place.rfind('/') + 1);
    }
    const std::unique_ptr<char, decltype(&std::free)> whole(::realpath(place.c_str(), nullptr),
                                                            &std::free);
    if (!whole) {
        return {};
    }
    const std::string found = whole.get() + name;
    return found.substr(0, found.rfind('/') + 1);
}

// On a Mac all files of a volume have the volume's device. On Linux a file of an overlay has the
// device of its layer, and a mount may be another part of the same device: its number is made to
// differ from its folder's.
std::int32_t deviceOnVolume(const struct statx& of, int at, const char* path, int flags) {
    const std::int32_t own = deviceOf(of.stx_dev_major, of.stx_dev_minor);
    struct statx folder{};
    if (S_ISDIR(of.stx_mode) ||
        ::statx(AT_FDCWD, folderAbove(at, path, flags).c_str(), 0, 0, &folder) != 0) {
        return own;
    }
    const std::int32_t volume = deviceOf(folder.stx_dev_major, folder.stx_dev_minor);
    return (of.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0 ? ~volume : volume;
}

int statusAt(int folder, const char* path, int flags, Status* status) {
    struct statx from{};
    if (checked(::statx(folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &from)) != 0) {
        return -1;
    }
    *status = {};
    status->device = deviceOnVolume(from, folder, path, flags);
    status->mode = from.stx_mode;
    status->linkCount = static_cast<std::uint16_t>(from.stx_nlink);
    status->inode = from.stx_ino;
    status->user = from.stx_uid;
    status->group = from.stx_gid;
    status->deviceOfNode = deviceOf(from.stx_rdev_major, from.stx_rdev_minor);
    status->accessed = timeOf(from.stx_atime);
    status->modified = timeOf(from.stx_mtime);
    status->changed = timeOf(from.stx_ctime);
    // A file system without birth times reports the last change instead (getattrlist(2)).
    status->born = timeOf((from.stx_mask & STATX_BTIME) != 0 ? from.stx_btime : from.stx_ctime);
    status->size = static_cast<std::int64_t>(from.stx_size);
    status->blocks = static_cast<std::int64_t>(from.stx_blocks);
    status->blockSize = static_cast<std::int32_t>(from.stx_blksize);
    return 0;
}

int removed(int result) {
    if (result != 0) {
        setDarwinErrno(errno == EISDIR ? static_cast<int>(DarwinError::notPermitted)
                                       : darwinError(errno));
    }
    return result;
}

namespace darwin {

int stat(const char* path, Status* status) {
    return statusAt(AT_FDCWD, path, 0, status);
}

int lstat(const char* path, Status* status) {
    return statusAt(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, status);
}

int fstat(int descriptor, Status* status) {
    return statusAt(descriptor, "", AT_EMPTY_PATH, status);
}

int fstatat(int folder, const char* path, Status* status, int flags) {
    return statusAt(linuxFolder(folder), path, linuxAtFlags(flags, "fstatat"), status);
}

int access(const char* path, int mode) {
    return checked(::access(path, mode));
}

int chmod(const char* path, std::uint16_t mode) {
    return checked(::chmod(path, mode));
}

int fchmod(int descriptor, std::uint16_t mode) {
    return checked(::fchmod(descriptor, mode));
}

int mkdir(const char* path, std::uint16_t mode) {
    return checked(::mkdir(path, mode));
}

int rename(const char* from, const char* to) {
    return checked(std::rename(from, to));
}

int unlink(const char* path) {
    return removed(::unlink(path));
}

int unlinkat(int folder, const char* path, int flags) {
    return removed(::unlinkat(linuxFolder(folder), path, linuxAtFlags(flags, "unlinkat")));
}

int rmdir(const char* path) {
    return checked(::rmdir(path));
}

int symlink(const char* target, const char* path) {
    return checked(::symlink(target, path));
}

ssize_t readlink(const char* path, char* buffer, std::size_t size) {
    return checked(::readlink(path, buffer, size));
}

int chdir(const char* path) {
    return checked(::chdir(path));
}

char* getcwd(char* buffer, std::size_t size) {
    return checkedPointer(::getcwd(buffer, size));
}

char* realpath(const char* path, char* resolved) {
    return checkedPointer(::realpath(path, resolved));
}

} // namespace darwin

} // namespace

Symbols fileSymbols() {
    static const Symbol symbols[] = {
        {"_stat", address(darwin::stat)},
        {"_lstat", address(darwin::lstat)},
        {"_fstat", address(darwin::fstat)},
        {"_fstatat", address(darwin::fstatat)},
        {"_access", address(darwin::access)},
        {"_chmod", address(darwin::chmod)},
        {"_fchmod", address(darwin::fchmod)},
        {"_mkdir", address(darwin::mkdir)},
        {"_rename", address(darwin::rename)},
        {"_unlink", address(darwin::unlink)},
        {"_unlinkat", address(darwin::unlinkat)},
        {"_rmdir", address(darwin::rmdir)},
        {"_symlink", address(darwin::symlink)},
        {"_readlink", address(darwin::readlink)},
        {"_chdir", address(darwin::chdir)},
        {"_getcwd", address(darwin::getcwd)},
        {"_realpath$DARWIN_EXTSN", address(darwin::realpath)},
    };
    return symbols;
}

} // namespace mac
