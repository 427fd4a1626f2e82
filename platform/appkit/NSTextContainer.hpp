#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSTextContainer : public NSObject {
  public:
    // clang-format off
    static NSTextContainer* alloc() { return ClassMethod<"NSTextContainer", "alloc", NSTextContainer*()>::send(); }

    NSTextContainer* initWithContainerSize(NSSize size) { return InstanceMethod<"NSTextContainer", "initWithContainerSize:", NSTextContainer*(NSSize)>::send(this, size); }
    void setLineFragmentPadding(CGFloat padding) { InstanceMethod<"NSTextContainer", "setLineFragmentPadding:", void(CGFloat)>::send(this, padding); }

    // clang-format on
};

} // namespace platform::appkit
