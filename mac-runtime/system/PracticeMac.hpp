#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mac {

/// The value of that key in the practice Mac's system.plist, if there is one.
[[nodiscard]] std::optional<std::string> practiceMacText(std::string_view key);

} // namespace mac
