#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSTextContainer : public NSObject {
  public:
    // clang-format off
    static NSTextContainer* alloc() { return ClassMethod<"NSTextContainer", "alloc", NSTextContainer*()>::send(); }

#if defined(__APPLE__)
    NSTextContainer* initWithSize(NSSize size) { return InstanceMethod<"NSTextContainer", "initWithSize:", NSTextContainer*(NSSize)>::send(this, size); }
#else
    // GNUstep has only the older method, which is deprecated on a Mac.
    NSTextContainer* initWithSize(NSSize size) { return InstanceMethod<"NSTextContainer", "initWithContainerSize:", NSTextContainer*(NSSize)>::send(this, size); }
#endif
    void setLineFragmentPadding(CGFloat padding) { InstanceMethod<"NSTextContainer", "setLineFragmentPadding:", void(CGFloat)>::send(this, padding); }

    // clang-format on
};

} // namespace platform::appkit
