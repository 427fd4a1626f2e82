#pragma once

#include "platform/appkit/NSAppearance.hpp"
#include "platform/appkit/NSColor.hpp"
#include "platform/appkit/NSScreen.hpp"
#include "platform/appkit/NSView.hpp"

namespace platform::appkit {

class NSWindow : public NSObject {
  public:
    static constexpr UInteger titled = 1;
    static constexpr UInteger closable = 2;
    static constexpr UInteger backingBuffered = 2;
    static constexpr Integer titleHidden = 1;
    static constexpr Integer levelNormal = 0;

    // clang-format off
    static NSWindow* alloc() { return ClassMethod<"NSWindow", "alloc", NSWindow*()>::send(); }

    NSWindow* initWithContentRect(const NSRect& content, UInteger styleMask, UInteger backing, bool defer) { return InstanceMethod<"NSWindow", "initWithContentRect:styleMask:backing:defer:", NSWindow*(NSRect, UInteger, UInteger, Bool)>::send(this, content, styleMask, backing, objc::toBool(defer)); }
    void setTitle(NSString* title) { InstanceMethod<"NSWindow", "setTitle:", void(NSString*)>::send(this, title); }
    void setTitleVisibility(Integer visibility) { InstanceMethod<"NSWindow", "setTitleVisibility:", void(Integer)>::send(this, visibility); }
    void setRestorable(bool flag) { InstanceMethod<"NSWindow", "setRestorable:", void(Bool)>::send(this, objc::toBool(flag)); }
    void setBackgroundColor(NSColor* color) { InstanceMethod<"NSWindow", "setBackgroundColor:", void(NSColor*)>::send(this, color); }
    void setAppearance(NSAppearance* appearance) { InstanceMethod<"NSWindow", "setAppearance:", void(NSAppearance*)>::send(this, appearance); }
    void setLevel(Integer level) { InstanceMethod<"NSWindow", "setLevel:", void(Integer)>::send(this, level); }
    void setReleasedWhenClosed(bool flag) { InstanceMethod<"NSWindow", "setReleasedWhenClosed:", void(Bool)>::send(this, objc::toBool(flag)); }
    void setAcceptsMouseMovedEvents(bool flag) { InstanceMethod<"NSWindow", "setAcceptsMouseMovedEvents:", void(Bool)>::send(this, objc::toBool(flag)); }
    void setContentView(NSView* view) { InstanceMethod<"NSWindow", "setContentView:", void(NSView*)>::send(this, view); }
    void makeFirstResponder(NSObject* responder) { InstanceMethod<"NSWindow", "makeFirstResponder:", Bool(NSObject*)>::send(this, responder); }
    void setInitialFirstResponder(NSView* view) { InstanceMethod<"NSWindow", "setInitialFirstResponder:", void(NSView*)>::send(this, view); }
    void setFrameOrigin(NSPoint origin) { InstanceMethod<"NSWindow", "setFrameOrigin:", void(NSPoint)>::send(this, origin); }
    void setFrame(const NSRect& frame, bool display) { InstanceMethod<"NSWindow", "setFrame:display:", void(NSRect, Bool)>::send(this, frame, objc::toBool(display)); }
    void center() { InstanceMethod<"NSWindow", "center", void()>::send(this); }
    void makeKeyAndOrderFront(NSObject* sender) { InstanceMethod<"NSWindow", "makeKeyAndOrderFront:", void(NSObject*)>::send(this, sender); }
    void orderFront(NSObject* sender) { InstanceMethod<"NSWindow", "orderFront:", void(NSObject*)>::send(this, sender); }
    void display() { InstanceMethod<"NSWindow", "display", void()>::send(this); }
    [[nodiscard]] NSPoint mouseLocation() const { return InstanceMethod<"NSWindow", "mouseLocationOutsideOfEventStream", NSPoint()>::send(this); }
    [[nodiscard]] NSRect frame() const { return InstanceMethod<"NSWindow", "frame", NSRect()>::send(this); }
    [[nodiscard]] NSScreen* screen() const { return InstanceMethod<"NSWindow", "screen", NSScreen*()>::send(this); }
    [[nodiscard]] NSRect rectToScreen(const NSRect& rect) const { return InstanceMethod<"NSWindow", "convertRectToScreen:", NSRect(NSRect)>::send(this, rect); }

    // clang-format on
};

inline NSWindow* NSView::window() const {
    return InstanceMethod<"NSView", "window", NSWindow*()>::send(this);
}

} // namespace platform::appkit
