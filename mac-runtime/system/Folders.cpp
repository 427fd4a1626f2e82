#include "loader/Symbols.hpp"
#include "system/Errors.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <dirent.h>

// directory(3) with <sys/dirent.h>'s entries of 64-bit inodes. A DIR is this system's own: it is
// opaque to the program.

namespace mac {

namespace {

struct Entry {
    std::uint64_t inode, seekOffset;
    std::uint16_t recordLength, nameLength;
    std::uint8_t type;
    char name[1024];
};

static_assert(offsetof(Entry, name) == 21);

namespace darwin {

DIR* opendir(const char* path) {
    return checkedPointer(::opendir(path));
}

DIR* fdopendir(int descriptor) {
    return checkedPointer(::fdopendir(descriptor));
}

// One buffer for each thread: an entry is valid until the thread reads the next one, of any folder.
// The entry types have the same numbers on both systems.
Entry* readdir(DIR* folder) {
    static thread_local Entry entry;
    errno = 0;
    const dirent* from = ::readdir(folder);
    if (from == nullptr) {
        if (errno != 0) {
            setDarwinErrno(darwinError(errno));
        }
        return nullptr;
    }
    entry.inode = from->d_ino;
    entry.seekOffset = 0;
    entry.type = from->d_type;
    entry.nameLength = static_cast<std::uint16_t>(std::strlen(&from->d_name[0]));
    std::memcpy(&entry.name[0], &from->d_name[0], entry.nameLength + 1U);
    // Records are multiples of a word.
    entry.recordLength =
        static_cast<std::uint16_t>((offsetof(Entry, name) + entry.nameLength + 1 + 3) / 4 * 4);
    return &entry;
}

int closedir(DIR* folder) {
    return checked(::closedir(folder));
}

int dirfd(DIR* folder) {
    return checked(::dirfd(folder));
}

} // namespace darwin

} // namespace

Symbols folderSymbols() {
    static const Symbol symbols[] = {
        {"_opendir", address(darwin::opendir)}, {"_fdopendir", address(darwin::fdopendir)},
        {"_readdir", address(darwin::readdir)}, {"_closedir", address(darwin::closedir)},
        {"_dirfd", address(darwin::dirfd)},
    };
    return symbols;
}

} // namespace mac
