#pragma once

#include <string_view>

namespace platform {

/// The text without the white space and line ends around it, Unicode's included: what is left is
/// a part of the same bytes. Takes UTF-8. Any thread.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The text without the spaces and tabs around it. Any thread.
[[nodiscard]] std::string_view trimmedOfBlanks(std::string_view text);

} // namespace platform
