#include "loader/Symbols.hpp"
#include "system/Errors.hpp"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <sys/statfs.h>
#include <unistd.h>

// statfs(2) with <sys/mount.h>'s structure of 64-bit inodes. The kernel tells a file's mount in
// /proc/self/fdinfo, and that mount's mount point in mountinfo (proc(5)).

namespace mac {

namespace {

struct Volume {
    std::uint32_t blockSize;
    std::int32_t transferSize;
    std::uint64_t blocks, freeBlocks, availableBlocks, files, freeFiles;
    std::int32_t identifier[2];
    std::uint32_t owner, type, flags, subtype;
    char typeName[16];
    char mountedOn[1024];
    char mountedFrom[1024];
    std::uint32_t moreFlags, reserved[7];
};

static_assert(sizeof(Volume) == 2168);

constexpr std::uint32_t readOnly = 0x1; // MNT_RDONLY

struct Mount {
    std::string mountedOn, type, mountedFrom;
};

// mountinfo escapes spaces and the like as three octal digits.
std::string unescaped(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size()) {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 3), nullptr, 8));
            i += 3;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string mountIdentifier(int descriptor) {
    std::ifstream file("/proc/self/fdinfo/" + std::to_string(descriptor));
    for (std::string name, value; file >> name >> value;) {
        if (name == "mnt_id:") {
            return value;
        }
    }
    return {};
}

// "36 35 98:0 / /mnt rw,noatime shared:1 - ext4 /dev/root rw": a dash ends the optional fields.
std::optional<Mount> mountOf(int descriptor) {
    const std::string wanted = mountIdentifier(descriptor);
    std::ifstream file("/proc/self/mountinfo");
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string number, parent, device, root, mountedOn, dash;
        words >> number >> parent >> device >> root >> mountedOn;
        if (number != wanted) {
            continue;
        }
        Mount mount{.mountedOn = unescaped(mountedOn), .type = {}, .mountedFrom = {}};
        while (words >> dash && dash != "-") {
        }
        words >> mount.type >> mount.mountedFrom;
        mount.mountedFrom = unescaped(mount.mountedFrom);
        return mount;
    }
    return std::nullopt;
}

template <std::size_t Size>
void copyText(char (&to)[Size], const std::string& from) {
    std::snprintf(&to[0], Size, "%s", from.c_str());
}

int volumeOf(int descriptor, Volume* volume) {
    struct statfs from{};
    if (checked(::fstatfs(descriptor, &from)) != 0) {
        return -1;
    }
    const std::optional<Mount> mount = mountOf(descriptor);
    if (!mount) {
        return failWith(DarwinError::noEntry);
    }
    *volume = {};
    volume->blockSize = static_cast<std::uint32_t>(from.f_bsize);
    volume->transferSize = static_cast<std::int32_t>(from.f_bsize);
    volume->blocks = from.f_blocks;
    volume->freeBlocks = from.f_bfree;
    volume->availableBlocks = from.f_bavail;
    volume->files = from.f_files;
    volume->freeFiles = from.f_ffree;
    std::memcpy(&volume->identifier[0], &from.f_fsid, sizeof volume->identifier);
    volume->flags = (from.f_flags & 1) != 0 ? readOnly : 0; // ST_RDONLY
    copyText(volume->typeName, mount->type);
    copyText(volume->mountedOn, mount->mountedOn);
    copyText(volume->mountedFrom, mount->mountedFrom);
    return 0;
}

namespace darwin {

int statfs(const char* path, Volume* volume) {
    const int descriptor = checked(::open(path, O_PATH | O_CLOEXEC));
    if (descriptor < 0) {
        return -1;
    }
    const int result = volumeOf(descriptor, volume);
    ::close(descriptor);
    return result;
}

int fstatfs(int descriptor, Volume* volume) {
    return volumeOf(descriptor, volume);
}

} // namespace darwin

} // namespace

Symbols volumeSymbols() {
    static const Symbol symbols[] = {
        {"_statfs", address(darwin::statfs)},
        {"_fstatfs", address(darwin::fstatfs)},
    };
    return symbols;
}

} // namespace mac
