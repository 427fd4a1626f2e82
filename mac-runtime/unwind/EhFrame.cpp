#include "loader/Failure.hpp"
#include "unwind/TableReaders.hpp"

#include <cstring>
#include <map>
#include <string_view>

namespace mac {

namespace {

// The pointer encodings that Apple's linker uses, as in the Linux Standard Base, "DWARF
// Extensions".
constexpr std::uint8_t omitted = 0xff;
constexpr std::uint8_t formatMask = 0x0f;
constexpr std::uint8_t relative = 0x10;
constexpr std::uint8_t relativeMask = 0x70;
constexpr std::uint8_t indirect = 0x80;

template <class T>
T take(const std::uint8_t*& place) {
    T value{};
    std::memcpy(&value, place, sizeof value);
    place += sizeof value;
    return value;
}

std::uint64_t takeUleb(const std::uint8_t*& place) {
    std::uint64_t value = 0;
    for (int shift = 0;; shift += 7) {
        const std::uint8_t byte = *place++;
        value |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
        if ((byte & 0x80) == 0) {
            return value;
        }
    }
}

std::uintptr_t takePointer(const std::uint8_t*& place, std::uint8_t encoding) {
    const auto here = reinterpret_cast<std::uintptr_t>(place);
    std::uintptr_t value = 0;
    switch (encoding & formatMask) {
    case 0x0:
    case 0x4:
    case 0xc: value = take<std::uint64_t>(place); break;
    case 0x3: value = take<std::uint32_t>(place); break;
    case 0xb: value = static_cast<std::uintptr_t>(std::int64_t{take<std::int32_t>(place)}); break;
    default: fail("__eh_frame has pointers of the encoding %#x", encoding);
    }
    if (value != 0 && (encoding & relativeMask) == relative) {
        value += here;
    }
    if (value != 0 && (encoding & indirect) != 0) {
        value = *reinterpret_cast<const std::uintptr_t*>(value);
    }
    return value;
}

struct Common {
    DwarfFrames::Offset offset = 0;
    std::uint8_t languageData = omitted;
    std::uint8_t code = 0;
};

void copyUleb(const std::uint8_t*& place, DwarfFrames& frames) {
    do {
        frames.byte(*place);
    } while ((*place++ & 0x80) != 0);
}

Common addCommon(const std::uint8_t* place, const std::uint8_t* end, DwarfFrames& frames) {
    Common common;
    frames.beginCommon();
    common.offset = frames.entryStart();
    frames.byte(*place++);
    const std::string_view augmentation(reinterpret_cast<const char*>(place));
    if (!augmentation.starts_with('z')) {
        fail("__eh_frame has the augmentation \"%s\"", augmentation.data());
    }
    place += augmentation.size() + 1;
    frames.augmentationText(augmentation.find('P') != std::string_view::npos);
    copyUleb(place, frames); // code alignment factor
    copyUleb(place, frames); // data alignment factor
    frames.byte(*place++);   // return address register
    const std::uint64_t size = takeUleb(place);
    const std::uint8_t* instructions = place + size;
    std::uintptr_t personality = 0;
    for (const char letter : augmentation.substr(1)) {
        switch (letter) {
        case 'P': {
            const std::uint8_t encoding = *place++;
            personality = wrappedPersonality(takePointer(place, encoding));
            break;
        }
        case 'L': common.languageData = *place++; break;
        case 'R': common.code = *place++; break;
        default: fail("__eh_frame has the augmentation \"%s\"", augmentation.data());
        }
    }
    if ((personality == 0) != (common.languageData == omitted)) {
        fail("__eh_frame has language data without a personality, or the reverse");
    }
    frames.augmentationData(personality);
    frames.bytes(instructions, end);
    frames.end();
    return common;
}

void addDescription(const std::uint8_t* place, const std::uint8_t* end, const Common& common,
                    DwarfFrames& frames) {
    frames.beginDescription(common.offset);
    frames.word(takePointer(place, common.code), 8);
    frames.word(takePointer(place, common.code & formatMask), 8);
    const std::uint64_t size = takeUleb(place);
    const std::uint8_t* instructions = place + size;
    if (common.languageData == omitted) {
        frames.uleb(0);
    } else {
        frames.uleb(8);
        frames.word(takePointer(place, common.languageData), 8);
    }
    frames.bytes(instructions, end);
    frames.end();
}

} // namespace

void addEhFrame(std::span<const std::uint8_t> table, DwarfFrames& frames) {
    std::map<const std::uint8_t*, Common> commons;
    const std::uint8_t* place = table.data();
    while (place < table.data() + table.size()) {
        const std::uint8_t* entry = place;
        const auto length = take<std::uint32_t>(place);
        if (length == 0) {
            return;
        }
        const std::uint8_t* end = place + length;
        const std::uint8_t* field = place;
        const auto back = take<std::uint32_t>(place);
        if (back == 0) {
            commons[entry] = addCommon(place, end, frames);
        } else {
            addDescription(place, end, commons.at(field - back), frames);
        }
        place = end;
    }
}

} // namespace mac
