#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSTrackingArea : public NSObject {
  public:
    static constexpr UInteger enteredAndExited = 0x01;
    static constexpr UInteger moved = 0x02;
    static constexpr UInteger activeInActiveApplication = 0x40;
    static constexpr UInteger inVisibleRect = 0x200;

    // clang-format off
    static NSTrackingArea* alloc() { return ClassMethod<"NSTrackingArea", "alloc", NSTrackingArea*()>::send(); }

    NSTrackingArea* initWithRect(const NSRect& rect, UInteger options, NSObject* owner, NSDictionary* userInfo) { return InstanceMethod<"NSTrackingArea", "initWithRect:options:owner:userInfo:", NSTrackingArea*(NSRect, UInteger, NSObject*, NSDictionary*)>::send(this, rect, options, owner, userInfo); }

    // clang-format on
};

} // namespace platform::appkit
