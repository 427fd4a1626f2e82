#pragma once

#include <string_view>

namespace platform {

/// Where a piece first stands in a text, at or after a place in it; npos when it does not. For
/// texts of many megabytes: unlike `find`, it does not stop at each place where the piece's first
/// character stands. Any thread.
[[nodiscard]] std::size_t findText(std::string_view text, std::string_view piece,
                                   std::size_t from = 0);

} // namespace platform
