#include "loader/ChainedFixups.hpp"

#include "loader/Failure.hpp"
#include "loader/Image.hpp"
#include "loader/Symbols.hpp"

#include <cstdio>
#include <cstring>

namespace mac {

namespace {

// One pointer of a chain, as <mach-o/fixup-chains.h> lays out dyld_chained_ptr_64_bind and
// dyld_chained_ptr_64_rebase.
class ChainedPointer {
  public:
    explicit ChainedPointer(std::uint64_t value) : value_(value) {}

    [[nodiscard]] bool isBind() const { return value_ >> 63 != 0; }

    /// Distance to the next pointer of the chain, in bytes; 0 ends the chain.
    [[nodiscard]] std::uint64_t next() const { return (value_ >> 51 & 0xfff) * 4; }

    [[nodiscard]] std::uint32_t ordinal() const { return value_ & 0xffffff; }

    [[nodiscard]] std::uint64_t addend() const { return value_ >> 24 & 0xff; }

    [[nodiscard]] std::uint64_t target() const { return value_ & 0xfffffffff; }

    [[nodiscard]] std::uint64_t topByte() const { return (value_ >> 36 & 0xff) << 56; }

  private:
    std::uint64_t value_;
};

std::vector<std::uintptr_t> resolveImports(const Image& image, const macho::FixupsHeader& header) {
    if (header.importsFormat != macho::importsOfFourBytes) {
        fail("%s has imports of the format %u", image.path.c_str(), header.importsFormat);
    }
    std::vector<std::uintptr_t> values;
    bool allFound = true;
    for (std::uint32_t i = 0; i < header.importCount; ++i) {
        std::uint32_t import = 0;
        std::memcpy(&import, image.fixups + header.importsOffset + 4 * i, sizeof import);
        const auto* name =
            reinterpret_cast<const char*>(image.fixups + header.symbolsOffset + (import >> 9));
        const bool weak = (import >> 8 & 1) != 0;
        values.push_back(symbolNamed(name));
        if (values.back() == 0 && !weak) {
            const auto ordinal = static_cast<std::int8_t>(import & 0xff);
            const char* library = ordinal > 0 ? image.libraries.at(ordinal - 1U).c_str() : "";
            std::fprintf(stderr, "mac-runtime: %s of %s is in no list\n", name, library);
            allFound = false;
        }
    }
    if (!allFound) {
        fail("%s cannot be bound", image.path.c_str());
    }
    return values;
}

void followChain(const Image& image, std::uint8_t* place, std::uint16_t format,
                 const std::vector<std::uintptr_t>& imports) {
    while (true) {
        std::uint64_t value = 0;
        std::memcpy(&value, place, sizeof value);
        const ChainedPointer pointer(value);
        if (pointer.isBind()) {
            value = imports.at(pointer.ordinal()) + pointer.addend();
        } else {
            const std::uint64_t from = format == macho::pointer64Offset ? image.base : image.slide;
            value = (pointer.target() + from) | pointer.topByte();
        }
        std::memcpy(place, &value, sizeof value);
        if (pointer.next() == 0) {
            return;
        }
        place += pointer.next();
    }
}

} // namespace

void applyFixups(const Image& image) {
    const auto& header = *reinterpret_cast<const macho::FixupsHeader*>(image.fixups);
    const auto imports = resolveImports(image, header);
    const std::uint8_t* starts = image.fixups + header.startsOffset;
    std::uint32_t segmentCount = 0;
    std::memcpy(&segmentCount, starts, sizeof segmentCount);
    for (std::uint32_t i = 0; i < segmentCount; ++i) {
        std::uint32_t offset = 0;
        std::memcpy(&offset, starts + 4 + 4 * i, sizeof offset);
        if (offset == 0) {
            continue;
        }
        const auto& segment = *reinterpret_cast<const macho::StartsInSegment*>(starts + offset);
        if (segment.pointerFormat != macho::pointer64 &&
            segment.pointerFormat != macho::pointer64Offset) {
            fail("%s has pointers of the format %u", image.path.c_str(), segment.pointerFormat);
        }
        for (std::size_t page = 0; page < segment.pageCount; ++page) {
            const std::uint16_t start = (&segment.pageStarts[0])[page];
            if (start != macho::noFixupsInPage) {
                auto* place = reinterpret_cast<std::uint8_t*>(image.base + segment.segmentOffset +
                                                              page * segment.pageSize + start);
                followChain(image, place, segment.pointerFormat, imports);
            }
        }
    }
}

} // namespace mac
