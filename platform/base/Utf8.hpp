#pragma once

#include <string>
#include <string_view>

namespace platform {

// Text in UTF-8: is it well-formed, its white space, and search.

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing above
/// U+10FFFF. One pass, no copy; long runs of ASCII go eight bytes at a time. Any thread.
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// The bytes as well-formed UTF-8: each maximal ill-formed run that a decoder would give up on
/// becomes one U+FFFD. Well-formed text comes back unchanged. Any thread.
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

/// Well-formed text in UTF-16. Any thread.
[[nodiscard]] std::u16string toUtf16(std::string_view text);

/// The text without the white space and line ends around it, Unicode's included: what is left is
/// a part of the same bytes. Takes UTF-8. Any thread.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The text without the spaces and tabs around it. Any thread.
[[nodiscard]] std::string_view trimmedOfBlanks(std::string_view text);

/// Where a piece first stands in a text, at or after a place in it; npos when it does not. For
/// texts of many megabytes: unlike `find`, it does not stop at each place where the piece's first
/// character stands. Any thread.
[[nodiscard]] std::size_t findText(std::string_view text, std::string_view piece,
                                   std::size_t from = 0);

} // namespace platform
