#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSBitmapImageRep.hpp"
#include "platform/appkit/NSGeometry.hpp"
#include "platform/appkit/NSTrackingArea.hpp"

namespace platform::appkit {

class NSWindow;

class NSView : public NSObject {
  public:
    // clang-format off
    NSView* initWithFrame(const NSRect& frame) { return InstanceMethod<"NSView", "initWithFrame:", NSView*(NSRect)>::send(this, frame); }
    [[nodiscard]] NSRect bounds() const { return InstanceMethod<"NSView", "bounds", NSRect()>::send(this); }
    void setBoundsSize(NSSize size) { InstanceMethod<"NSView", "setBoundsSize:", void(NSSize)>::send(this, size); }
    void setNeedsDisplay(bool flag) { InstanceMethod<"NSView", "setNeedsDisplay:", void(Bool)>::send(this, objc::toBool(flag)); }
    [[nodiscard]] NSWindow* window() const;
    [[nodiscard]] NSObject* nextResponder() const { return InstanceMethod<"NSResponder", "nextResponder", NSObject*()>::send(this); }
    void addTrackingArea(NSTrackingArea* area) { InstanceMethod<"NSView", "addTrackingArea:", void(NSTrackingArea*)>::send(this, area); }
    [[nodiscard]] NSPoint fromWindow(NSPoint point, NSView* view) const { return InstanceMethod<"NSView", "convertPoint:fromView:", NSPoint(NSPoint, NSView*)>::send(this, point, view); }
    [[nodiscard]] NSRect rectToView(const NSRect& rect, NSView* view) const { return InstanceMethod<"NSView", "convertRect:toView:", NSRect(NSRect, NSView*)>::send(this, rect, view); }
    [[nodiscard]] NSBitmapImageRep* bitmapForCaching(const NSRect& rect) const { return InstanceMethod<"NSView", "bitmapImageRepForCachingDisplayInRect:", NSBitmapImageRep*(NSRect)>::send(this, rect); }
    void cacheDisplay(const NSRect& rect, NSBitmapImageRep* bitmap) { InstanceMethod<"NSView", "cacheDisplayInRect:toBitmapImageRep:", void(NSRect, NSBitmapImageRep*)>::send(this, rect, bitmap); }

    // clang-format on
};

} // namespace platform::appkit
