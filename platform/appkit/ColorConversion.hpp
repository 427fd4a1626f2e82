#pragma once

#include "platform/appkit/NSColor.hpp"
#include "platform/declarative/Color.hpp"

namespace platform::appkit {

/// Autoreleased. Main thread.
[[nodiscard]] inline NSColor* toNSColor(const declarative::Color& color) {
    return NSColor::colorWithSRGB(color.red, color.green, color.blue, color.alpha);
}

} // namespace platform::appkit
