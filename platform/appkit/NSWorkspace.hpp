#pragma once

#include "platform/appkit/AppKitObject.hpp"

namespace platform::appkit {

class NSWorkspace : public NSObject {
  public:
    // clang-format off
    static NSWorkspace* sharedWorkspace() { return ClassMethod<"NSWorkspace", "sharedWorkspace", NSWorkspace*()>::send(); }

    [[nodiscard]] bool shouldReduceMotion() const { return InstanceMethod<"NSWorkspace", "accessibilityDisplayShouldReduceMotion", Bool()>::send(this) != NO; }

    // clang-format on
};

} // namespace platform::appkit
