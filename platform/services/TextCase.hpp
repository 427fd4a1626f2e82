#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The text in lower case by Unicode's rules, as the system folds it: the Kelvin sign becomes k.
/// Takes UTF-8; bytes that are none come back unchanged. Any thread.
[[nodiscard]] std::string lowercased(std::string_view text);

} // namespace platform
