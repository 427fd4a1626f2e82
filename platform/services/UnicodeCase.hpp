#pragma once

#include <string>
#include <string_view>

namespace platform {

/// What `lowercased` gives where the text has more than ASCII. Any thread.
[[nodiscard]] std::string lowercasedUnicode(std::string_view text);

} // namespace platform
