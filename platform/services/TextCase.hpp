#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace platform {

// Upper and lower case.

/// What `lowercased` gives where the text has more than ASCII. Any thread.
[[nodiscard]] std::string lowercasedUnicode(std::string_view text);

/// The text in lower case by Unicode's rules, as the system folds it: the Kelvin sign becomes k.
/// Takes UTF-8; bytes that are none come back unchanged. Any thread.
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

/// Whether the text holds the part, letter case aside by the rules of the person's own language; on
/// Linux, by Unicode's. Takes UTF-8; bytes that are none hold nothing. Any thread.
[[nodiscard]] bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);

} // namespace platform
