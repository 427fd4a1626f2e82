#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSFont : public NSObject {
  public:
    // clang-format off
    static NSFont* systemFontOfSize(CGFloat size, CGFloat weight) { return ClassMethod<"NSFont", "systemFontOfSize:weight:", NSFont*(CGFloat, CGFloat)>::send(size, weight); }
    static NSFont* fontWithName(NSString* name, CGFloat size) { return ClassMethod<"NSFont", "fontWithName:size:", NSFont*(NSString*, CGFloat)>::send(name, size); }

    [[nodiscard]] CGFloat capHeight() const { return InstanceMethod<"NSFont", "capHeight", CGFloat()>::send(this); }

    // clang-format on
};

} // namespace platform::appkit
