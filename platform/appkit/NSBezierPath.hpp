#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSBezierPath : public NSObject {
  public:
    // clang-format off
    static NSBezierPath* bezierPath() { return ClassMethod<"NSBezierPath", "bezierPath", NSBezierPath*()>::send(); }

    void moveTo(NSPoint to) { InstanceMethod<"NSBezierPath", "moveToPoint:", void(NSPoint)>::send(this, to); }
    void lineTo(NSPoint to) { InstanceMethod<"NSBezierPath", "lineToPoint:", void(NSPoint)>::send(this, to); }
    void curveTo(NSPoint to, NSPoint control1, NSPoint control2) { InstanceMethod<"NSBezierPath", "curveToPoint:controlPoint1:controlPoint2:", void(NSPoint, NSPoint, NSPoint)>::send(this, to, control1, control2); }
    void closePath() { InstanceMethod<"NSBezierPath", "closePath", void()>::send(this); }
    void setFlatness(CGFloat flatness) { InstanceMethod<"NSBezierPath", "setFlatness:", void(CGFloat)>::send(this, flatness); }
    void setLineWidth(CGFloat width) { InstanceMethod<"NSBezierPath", "setLineWidth:", void(CGFloat)>::send(this, width); }
    void fill() { InstanceMethod<"NSBezierPath", "fill", void()>::send(this); }
    void stroke() { InstanceMethod<"NSBezierPath", "stroke", void()>::send(this); }
    void addClip() { InstanceMethod<"NSBezierPath", "addClip", void()>::send(this); }

    // clang-format on
};

} // namespace platform::appkit
