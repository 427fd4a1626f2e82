#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"

#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

// malloc(3), aligned_alloc(3), mstats of <malloc/malloc.h>, and mmap(2) with <sys/mman.h>'s flags
// and pages of 16 KB, the page size of Macs with Apple silicon.

namespace mac {

namespace {

constexpr std::uintptr_t pageSize = 16384;

std::uintptr_t wholePages(std::uintptr_t size) {
    return (size + pageSize - 1) & ~(pageSize - 1);
}

// Maps one page more than needed, so that an aligned address is in it, and unmaps the rest.
void* mapAligned(std::size_t size, int protection, int flags, int descriptor, off_t offset) {
    auto* whole = static_cast<char*>(
        ::mmap(nullptr, size + pageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (whole == MAP_FAILED) {
        return whole;
    }
    auto* begin = reinterpret_cast<char*>(wholePages(reinterpret_cast<std::uintptr_t>(whole)));
    void* mapped = ::mmap(begin, size, protection, flags | MAP_FIXED, descriptor, offset);
    if (mapped == MAP_FAILED) {
        const int error = errno;
        ::munmap(whole, size + pageSize);
        errno = error;
        return mapped;
    }
    if (begin != whole) {
        ::munmap(whole, static_cast<std::size_t>(begin - whole));
    }
    ::munmap(begin + size, static_cast<std::size_t>(whole + pageSize - begin));
    return mapped;
}

namespace darwin {

void* malloc(std::size_t size) {
    return checkedPointer(std::malloc(size == 0 ? 1 : size));
}

void* calloc(std::size_t count, std::size_t size) {
    return checkedPointer(std::calloc(count == 0 ? 1 : count, size == 0 ? 1 : size));
}

void* realloc(void* block, std::size_t size) {
    return checkedPointer(std::realloc(block, size == 0 ? 1 : size));
}

// The alignment must be a power of two, and the size a multiple of it.
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    if (alignment == 0 || (alignment & (alignment - 1)) != 0 || size % alignment != 0) {
        failWith(DarwinError::invalidArgument);
        return nullptr;
    }
    return checkedPointer(std::aligned_alloc(alignment, size));
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    return darwinError(::posix_memalign(block, alignment, size));
}

struct Statistics {
    std::size_t total, usedChunks, used, freeChunks, free;
};

Statistics mstats() {
    const auto information = ::mallinfo2();
    return {information.arena + information.hblkhd, information.hblks,
            information.uordblks + information.hblkhd, information.ordblks, information.fordblks};
}

void* mmap(void* place, std::size_t size, int protection, int flags, int descriptor, off_t offset) {
    constexpr int shared = 1;
    constexpr int isPrivate = 2;
    constexpr int fixed = 0x10;
    constexpr int anonymous = 0x1000;
    if ((flags & ~(shared | isPrivate | anonymous)) != 0 || place != nullptr) {
        fail("mmap with the flags %#x%s", flags,
             (flags & fixed) != 0 || place == nullptr ? "" : " and an address");
    }
    if (size == 0 || (static_cast<std::uintptr_t>(offset) & (pageSize - 1)) != 0) {
        failWith(DarwinError::invalidArgument);
        return MAP_FAILED;
    }
    const int ours = ((flags & shared) != 0 ? MAP_SHARED : 0) |
                     ((flags & isPrivate) != 0 ? MAP_PRIVATE : 0) |
                     ((flags & anonymous) != 0 ? MAP_ANONYMOUS : 0);
    void* mapped = mapAligned(wholePages(size), protection, ours, descriptor, offset);
    if (mapped == MAP_FAILED) {
        setDarwinErrno(darwinError(errno));
    }
    return mapped;
}

int munmap(void* place, std::size_t size) {
    return checked(::munmap(place, wholePages(size)));
}

int mprotect(void* place, std::size_t size, int protection) {
    if (reinterpret_cast<std::uintptr_t>(place) % pageSize != 0) {
        return failWith(DarwinError::invalidArgument);
    }
    return checked(::mprotect(place, wholePages(size), protection));
}

int getpagesize() {
    return pageSize;
}

long sysconf(int name) {
    constexpr int openMax = 5;
    constexpr int pages = 29;
    switch (name) {
    case openMax: return checked(::sysconf(_SC_OPEN_MAX));
    case pages: return pageSize;
    default: fail("sysconf of %d, which is not known", name);
    }
}

} // namespace darwin

} // namespace

Symbols memorySymbols() {
    static const Symbol symbols[] = {
        {"_malloc", address(darwin::malloc)},
        {"_calloc", address(darwin::calloc)},
        {"_realloc", address(darwin::realloc)},
        {"_aligned_alloc", address(darwin::aligned_alloc)},
        {"_posix_memalign", address(darwin::posix_memalign)},
        {"_mstats", address(darwin::mstats)},
        {"_mmap", address(darwin::mmap)},
        {"_munmap", address(darwin::munmap)},
        {"_mprotect", address(darwin::mprotect)},
        {"_getpagesize", address(darwin::getpagesize)},
        {"_sysconf", address(darwin::sysconf)},
    };
    return symbols;
}

} // namespace mac
