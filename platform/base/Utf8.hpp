#pragma once

#include <string>
#include <string_view>

namespace platform {

// Text in UTF-8: validation, repair, trimming and search.

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing above
/// U+10FFFF. One pass, no copy; long runs of ASCII go eight bytes at a time.
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// The bytes as well-formed UTF-8: each maximal ill-formed subsequence becomes one U+FFFD.
/// Well-formed text is returned unchanged.
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

/// Well-formed text in UTF-16.
[[nodiscard]] std::u16string toUtf16(std::string_view text);

/// The text without white space and line ends at its ends, Unicode's included; a view of the same
/// bytes. Takes UTF-8.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The text without spaces and tabs at its ends; a view of the same bytes.
[[nodiscard]] std::string_view trimmedSpacesAndTabs(std::string_view text);

/// The position of the first occurrence of the piece at or after `from`; npos when there is none.
/// For texts of many megabytes: unlike `find`, it does not stop at every occurrence of the piece's
/// first character.
[[nodiscard]] std::size_t findText(std::string_view text, std::string_view piece,
                                   std::size_t from = 0);

} // namespace platform
