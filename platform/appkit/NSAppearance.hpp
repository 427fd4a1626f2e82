#pragma once

#include "platform/appkit/AppKitObject.hpp"

namespace platform::appkit {

class NSAppearance : public NSObject {
  public:
    // clang-format off
    static NSAppearance* appearanceNamed(NSString* name) { return ClassMethod<"NSAppearance", "appearanceNamed:", NSAppearance*(NSString*)>::send(name); }

    // clang-format on
};

} // namespace platform::appkit
