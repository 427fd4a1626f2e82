#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

// GNUstep has no such class.

namespace platform::appkit {

class NSAccessibilityElement : public NSObject {
  public:
    static constexpr Integer priorityHigh = 90;

    // clang-format off
    void setRole(NSString* role) { InstanceMethod<"NSAccessibilityElement", "setAccessibilityRole:", void(NSString*)>::send(this, role); }
    void setLabel(NSString* label) { InstanceMethod<"NSAccessibilityElement", "setAccessibilityLabel:", void(NSString*)>::send(this, label); }
    void setTitle(NSString* title) { InstanceMethod<"NSAccessibilityElement", "setAccessibilityTitle:", void(NSString*)>::send(this, title); }
    void setValue(NSObject* value) { InstanceMethod<"NSAccessibilityElement", "setAccessibilityValue:", void(NSObject*)>::send(this, value); }
    void setMinValue(NSObject* value) { InstanceMethod<"NSAccessibilityElement", "setAccessibilityMinValue:", void(NSObject*)>::send(this, value); }
    void setMaxValue(NSObject* value) { InstanceMethod<"NSAccessibilityElement", "setAccessibilityMaxValue:", void(NSObject*)>::send(this, value); }
    void setEnabled(bool flag) { InstanceMethod<"NSAccessibilityElement", "setAccessibilityEnabled:", void(Bool)>::send(this, objc::toBool(flag)); }
    [[nodiscard]] NSRect frame() const { return InstanceMethod<"NSAccessibilityElement", "accessibilityFrame", NSRect()>::send(this); }

    // clang-format on
};

} // namespace platform::appkit
