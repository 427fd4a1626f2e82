#pragma once

#include <string_view>

namespace platform {

/// Whether the text holds the part, letter case aside by the rules of the person's own language; on
/// Linux, by Unicode's. Takes UTF-8; bytes that are none hold nothing. Any thread.
[[nodiscard]] bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);

} // namespace platform
