#include "platform/services/TextCase.hpp"

#include "platform/services/UnicodeCase.hpp"

#include <algorithm>

namespace platform {

std::string lowercased(std::string_view text) {
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (!std::ranges::all_of(text, isAscii)) {
        return lowercasedUnicode(text);
    }
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return lower;
}

} // namespace platform
