#pragma once

#include "platform/appkit/AppKitObject.hpp"

namespace platform::appkit {

/// Core Graphics' context; opaque.
struct CGContext {
    CGContext() = delete;
};

} // namespace platform::appkit

template <>
struct platform::objc::Encoding<platform::appkit::CGContext> : EncodedAs<"{CGContext=}"> {};

namespace platform::appkit {

class NSGraphicsContext : public NSObject {
  public:
    static constexpr UInteger interpolationHigh = 3;

    // clang-format off
    static void saveGraphicsState() { ClassMethod<"NSGraphicsContext", "saveGraphicsState", void()>::send(); }
    static void restoreGraphicsState() { ClassMethod<"NSGraphicsContext", "restoreGraphicsState", void()>::send(); }
    static NSGraphicsContext* currentContext() { return ClassMethod<"NSGraphicsContext", "currentContext", NSGraphicsContext*()>::send(); }

    [[nodiscard]] void* cgContext() const { return InstanceMethod<"NSGraphicsContext", "CGContext", CGContext*()>::send(this); }
    void setImageInterpolation(UInteger interpolation) { InstanceMethod<"NSGraphicsContext", "setImageInterpolation:", void(UInteger)>::send(this, interpolation); }

    // clang-format on
};

} // namespace platform::appkit
