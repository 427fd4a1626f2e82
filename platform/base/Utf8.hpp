#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing above
/// U+10FFFF. One pass, no copy; long runs of ASCII go eight bytes at a time. Any thread.
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// The bytes as well-formed UTF-8: each maximal ill-formed run that a decoder would give up on
/// becomes one U+FFFD. Well-formed text comes back unchanged. Any thread.
[[nodiscard]] std::string repairedUtf8(std::string_view bytes);

/// Well-formed text in UTF-16. Any thread.
[[nodiscard]] std::u16string toUtf16(std::string_view text);

} // namespace platform
