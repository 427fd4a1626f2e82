#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSImageSymbolConfiguration : public NSObject {
  public:
    // clang-format off
    static NSImageSymbolConfiguration* withPointSize(CGFloat size, CGFloat weight) { return ClassMethod<"NSImageSymbolConfiguration", "configurationWithPointSize:weight:", NSImageSymbolConfiguration*(CGFloat, CGFloat)>::send(size, weight); }

    // clang-format on
};

} // namespace platform::appkit
