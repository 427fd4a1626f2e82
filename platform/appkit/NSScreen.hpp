#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSScreen : public NSObject {
  public:
    // clang-format off
    static NSScreen* mainScreen() { return ClassMethod<"NSScreen", "mainScreen", NSScreen*()>::send(); }

    [[nodiscard]] NSRect visibleFrame() const { return InstanceMethod<"NSScreen", "visibleFrame", NSRect()>::send(this); }

    // clang-format on
};

} // namespace platform::appkit
