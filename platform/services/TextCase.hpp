#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace platform {

// Upper and lower case.

/// What `lowercased` returns for text with more than ASCII.
[[nodiscard]] std::string lowercasedUnicode(std::string_view text);

/// The text in lower case by Unicode's rules: the Kelvin sign becomes k. Ill-formed UTF-8 is
/// returned unchanged.
[[nodiscard]] inline std::string lowercased(std::string_view text) {
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

/// Whether the text contains the part, ignoring case by the rules of the user's language; on Linux
/// by Unicode's. False when either is ill-formed UTF-8.
[[nodiscard]] bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);

} // namespace platform
