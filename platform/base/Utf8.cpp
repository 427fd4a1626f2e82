#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string.h>

namespace platform {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// The first character, or ill-formed subsequence, of some bytes.
struct Sequence {
    std::size_t length; // in bytes; at least 1
    bool wellFormed;
};

constexpr bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

// The range of the second byte excludes overlong forms, surrogates and what is above U+10FFFF; the
// later bytes may be any continuation bytes.
Sequence firstSequence(std::string_view bytes) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80) {
        return {1, true};
    }
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : low;
        high = lead == 0xED ? 0x9F : high;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : low;
        high = lead == 0xF4 ? 0x8F : high;
    } else {
        return {1, false};
    }
    if (bytes.size() < 2 || at(1) < low || at(1) > high) {
        return {1, false};
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (i >= bytes.size() || !isContinuation(at(i))) {
            return {i, false};
        }
    }
    return {length, true};
}

std::size_t asciiPrefixLength(std::string_view bytes) {
    std::size_t i = 0;
    for (; i + sizeof(std::uint64_t) <= bytes.size(); i += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + i, sizeof word);
        if ((word & 0x8080808080808080U) != 0) {
            break;
        }
    }
    while (i < bytes.size() && static_cast<unsigned char>(bytes[i]) < 0x80) {
        ++i;
    }
    return i;
}

// Unicode's separators and line ends, each in UTF-8.
constexpr std::array<std::string_view, 25> whiteSpace{
    " ",
    "\t",
    "\n",
    "\v",
    "\f",
    "\r",
    "\xC2\x85",
    "\xC2\xA0",
    "\xE1\x9A\x80",
    "\xE2\x80\x80",
    "\xE2\x80\x81",
    "\xE2\x80\x82",
    "\xE2\x80\x83",
    "\xE2\x80\x84",
    "\xE2\x80\x85",
    "\xE2\x80\x86",
    "\xE2\x80\x87",
    "\xE2\x80\x88",
    "\xE2\x80\x89",
    "\xE2\x80\x8A",
    "\xE2\x80\xA8",
    "\xE2\x80\xA9",
    "\xE2\x80\xAF",
    "\xE2\x81\x9F",
    "\xE3\x80\x80",
};

constexpr std::array<std::string_view, 2> spacesAndTabs{" ", "\t"};

template <std::size_t Count>
std::string_view without(const std::array<std::string_view, Count>& characters,
                         std::string_view text) {
    const auto* const none = characters.end();
    const auto first = [&] {
        return std::ranges::find_if(characters, [&](auto c) { return text.starts_with(c); });
    };
    const auto last = [&] {
        return std::ranges::find_if(characters, [&](auto c) { return text.ends_with(c); });
    };
    for (const auto* found = first(); found != none; found = first()) {
        text.remove_prefix(found->size());
    }
    for (const auto* found = last(); found != none; found = last()) {
        text.remove_suffix(found->size());
    }
    return text;
}

} // namespace

bool isValidUtf8(std::string_view bytes) {
    while (true) {
        bytes.remove_prefix(asciiPrefixLength(bytes));
        if (bytes.empty()) {
            return true;
        }
        const Sequence sequence = firstSequence(bytes);
        if (!sequence.wellFormed) {
            return false;
        }
        bytes.remove_prefix(sequence.length);
    }
}

std::string repairedUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Sequence sequence = firstSequence(bytes);
        text += sequence.wellFormed ? bytes.substr(0, sequence.length) : replacementCharacter;
        bytes.remove_prefix(sequence.length);
    }
    return text;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = firstSequence(text).length;
        const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
        constexpr unsigned leadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
        std::uint32_t c = at(0) & leadBits[length];
        for (std::size_t i = 1; i < length; ++i) {
            c = c << 6U | (at(i) & 0x3FU);
        }
        if (c < 0x10000) {
            units += static_cast<char16_t>(c);
        } else {
            units += static_cast<char16_t>(0xD7C0 + (c >> 10U));
            units += static_cast<char16_t>(0xDC00 + (c & 0x3FFU));
        }
        text.remove_prefix(length);
    }
    return units;
}

std::string_view trimmed(std::string_view text) {
    return without(whiteSpace, text);
}

std::string_view trimmedSpacesAndTabs(std::string_view text) {
    return without(spacesAndTabs, text);
}

std::size_t findText(std::string_view text, std::string_view piece, std::size_t from) {
    if (from > text.size()) {
        return std::string_view::npos;
    }
    // memmem must not get a null pointer, which an empty view may have.
    if (piece.empty()) {
        return from;
    }
    if (text.empty()) {
        return std::string_view::npos;
    }
    const void* found =
        ::memmem(text.data() + from, text.size() - from, piece.data(), piece.size());
    return found == nullptr
               ? std::string_view::npos
               : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

} // namespace platform
