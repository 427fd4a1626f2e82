#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"
#include "platform/declarative/Color.hpp"

namespace platform::appkit {

class NSColor : public NSObject {
  public:
    // clang-format off
    static NSColor* colorWithSRGB(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) { return ClassMethod<"NSColor", "colorWithSRGBRed:green:blue:alpha:", NSColor*(CGFloat, CGFloat, CGFloat, CGFloat)>::send(red, green, blue, alpha); }

    void set() { InstanceMethod<"NSColor", "set", void()>::send(this); }

    // clang-format on
};

/// Autoreleased. Main thread.
[[nodiscard]] inline NSColor* toNSColor(const declarative::Color& color) {
    return NSColor::colorWithSRGB(color.red, color.green, color.blue, color.alpha);
}

} // namespace platform::appkit
