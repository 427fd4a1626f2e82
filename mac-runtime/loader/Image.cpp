#include "loader/Image.hpp"

#include "loader/Failure.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mac {

namespace {

// The page size of Macs with Apple silicon, to which the linker aligns segments.
constexpr std::uint64_t pageSize = 16384;

std::uint64_t roundedUp(std::uint64_t value, std::uint64_t unit) {
    return (value + unit - 1) / unit * unit;
}

template <class T>
const T& at(const void* place) {
    return *static_cast<const T*>(place);
}

} // namespace

Image Image::map(const std::string& path) {
    Image image;
    image.path = path;
    image.name = path.substr(path.rfind('/') + 1);
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status{};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
        fail("%s: %s", path.c_str(), std::strerror(errno));
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    void* file = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (file == MAP_FAILED) {
        fail("%s: %s", path.c_str(), std::strerror(errno));
    }
    image.readCommands(static_cast<const std::uint8_t*>(file), size);
    image.chooseSlide();
    image.mapSegments(descriptor);
    ::munmap(file, size);
    ::close(descriptor);
    return image;
}

void Image::readCommands(const std::uint8_t* file, std::size_t size) {
    const auto& header = at<macho::Header>(file);
    if (size < sizeof header || header.magic != macho::magic64 ||
        header.cpuType != macho::cpuTypeArm64 || header.fileType != macho::fileTypeExecute) {
        fail("%s is no executable for arm64 Macs", path.c_str());
    }
    std::uint64_t fixupsOffset = 0;
    const std::uint8_t* place = file + sizeof header;
    for (std::uint32_t i = 0; i < header.commandCount; ++i) {
        const auto& head = at<macho::LoadCommand>(place);
        switch (head.command) {
        case macho::segment64: {
            const auto& segment = at<macho::Segment>(place);
            const auto* first = reinterpret_cast<const macho::Section*>(&segment + 1);
            segments_.push_back(segment);
            sections_.emplace_back(first, first + segment.sectionCount);
            break;
        }
        case macho::loadDylib:
        case macho::loadWeakDylib:
            libraries.emplace_back(
                reinterpret_cast<const char*>(place + at<macho::Dylib>(place).nameOffset));
            break;
        case macho::main: entryOffset = at<macho::EntryPoint>(place).offset; break;
        case macho::chainedFixups: fixupsOffset = at<macho::LinkeditData>(place).offset; break;
        // Nobody looks up the program's own symbols.
        case macho::exportsTrie: break;
        default:
            // dyld's rule: an unknown load command that is marked as required is an error.
            if ((head.command & macho::requiredByLoader) != 0) {
                fail("%s has the load command %#x, which is not known", path.c_str(), head.command);
            }
        }
        place += head.size;
    }
    if (fixupsOffset == 0 || entryOffset == 0) {
        fail("%s has no chained fixups or no main", path.c_str());
    }
    // Only the fixups of __LINKEDIT are read. It is the last segment.
    const auto linkedit = std::ranges::find_if(segments_, [&](const macho::Segment& segment) {
        return fixupsOffset >= segment.fileOffset &&
               fixupsOffset < segment.fileOffset + segment.fileSize;
    });
    fixups = reinterpret_cast<const std::uint8_t*>(linkedit->address + fixupsOffset -
                                                   linkedit->fileOffset);
}

// A random slide as macOS chooses it: whole pages, below its limit of 4 GB.
void Image::chooseSlide() {
    std::uint64_t lowest = UINT64_MAX;
    std::uint64_t highest = 0;
    for (const macho::Segment& segment : segments_) {
        if (segment.protection != 0) {
            lowest = std::min(lowest, segment.address);
            highest = std::max(highest, segment.address + segment.size);
        }
    }
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        slide = pageSize * std::uniform_int_distribution<std::uint64_t>(1, 0xffff)(random);
        base = lowest + slide;
        limit = highest + slide;
        void* wanted = reinterpret_cast<void*>(base);
        if (::mmap(wanted, limit - base, PROT_NONE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0) == wanted) {
            fixups += slide;
            return;
        }
    }
    fail("%s finds no room in memory", path.c_str());
}

void Image::mapSegments(int descriptor) {
    for (const macho::Segment& segment : segments_) {
        if (segment.protection == 0) {
            continue;
        }
        const std::uintptr_t begin = segment.address + slide;
        const std::uintptr_t fileEnd = begin + segment.fileSize;
        const std::uintptr_t end = begin + roundedUp(segment.size, pageSize);
        constexpr int writable = PROT_READ | PROT_WRITE;
        const auto place = [](std::uintptr_t address) { return reinterpret_cast<void*>(address); };
        const bool mapped =
            (segment.fileSize == 0 ||
             ::mmap(place(begin), segment.fileSize, writable, MAP_PRIVATE | MAP_FIXED, descriptor,
                    static_cast<off_t>(segment.fileOffset)) != MAP_FAILED);
        // The kernel's pages may be smaller than the Mac's; the rest of the Mac's last page is
        // zero.
        const std::uintptr_t zeroes =
            roundedUp(fileEnd, static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)));
        const bool zeroed =
            zeroes >= end || ::mmap(place(zeroes), end - zeroes, writable,
                                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
        if (!mapped || !zeroed) {
            fail("%s cannot be mapped: %s", path.c_str(), std::strerror(errno));
        }
    }
}

void Image::protect() const {
    for (const macho::Segment& segment : segments_) {
        if (segment.protection == 0) {
            continue;
        }
        const bool constant = (segment.flags & macho::segmentReadOnlyAfterFixups) != 0;
        const int protection = constant ? PROT_READ : static_cast<int>(segment.protection & 7);
        auto* begin = reinterpret_cast<char*>(segment.address + slide);
        if (::mprotect(begin, roundedUp(segment.size, pageSize), protection) != 0) {
            fail("%s cannot be protected: %s", path.c_str(), std::strerror(errno));
        }
        if ((protection & PROT_EXEC) != 0) {
            __builtin___clear_cache(begin, begin + segment.size);
        }
    }
}

void Image::forEachSection(
    const std::function<void(const macho::Section&, std::uint8_t*)>& visit) const {
    for (const auto& ofSegment : sections_) {
        for (const macho::Section& section : ofSegment) {
            visit(section, reinterpret_cast<std::uint8_t*>(section.address + slide));
        }
    }
}

} // namespace mac
