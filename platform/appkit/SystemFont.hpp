#pragma once

#include "platform/appkit/NSFont.hpp"
#include "platform/declarative/Text.hpp"

namespace platform::appkit {

/// The system's own typeface in that size and weight; elsewhere than on a Mac, Inter. Autoreleased.
/// Main thread.
[[nodiscard]] NSFont* systemFont(const declarative::Font& font);

} // namespace platform::appkit
