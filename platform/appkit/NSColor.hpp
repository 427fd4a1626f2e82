#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSColor : public NSObject {
  public:
    // clang-format off
    static NSColor* colorWithSRGB(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) { return ClassMethod<"NSColor", "colorWithSRGBRed:green:blue:alpha:", NSColor*(CGFloat, CGFloat, CGFloat, CGFloat)>::send(red, green, blue, alpha); }

    void set() { InstanceMethod<"NSColor", "set", void()>::send(this); }

    // clang-format on
};

} // namespace platform::appkit
