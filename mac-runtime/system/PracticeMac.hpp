#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mac {

/// What a practice Mac says of itself (its system.plist) under that key; nothing where it does not.
[[nodiscard]] std::optional<std::string> practiceMacText(std::string_view key);

} // namespace mac
