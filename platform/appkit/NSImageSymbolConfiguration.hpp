#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSImageSymbolConfiguration : public NSObject {
  public:
    // clang-format off
    static NSImageSymbolConfiguration* withPointSize(CGFloat size, CGFloat weight) { return ClassMethod<"NSImageSymbolConfiguration", "configurationWithPointSize:weight:", NSImageSymbolConfiguration*(CGFloat, CGFloat)>::send(size, weight); }
    static NSImageSymbolConfiguration* preferringMonochrome() { return ClassMethod<"NSImageSymbolConfiguration", "configurationPreferringMonochrome", NSImageSymbolConfiguration*()>::send(); }
    [[nodiscard]] NSImageSymbolConfiguration* applying(NSImageSymbolConfiguration* other) { return InstanceMethod<"NSImageSymbolConfiguration", "configurationByApplyingConfiguration:", NSImageSymbolConfiguration*(NSImageSymbolConfiguration*)>::send(this, other); }

    // clang-format on
};

} // namespace platform::appkit
