#include "platform/appkit/PageMounting.hpp"

#include "platform/appkit/ScreenScale.hpp"

namespace platform::appkit {

// The borders are so many pixels wide, and GNUstep lets the content begin so many points after
// them: where a point is more than a pixel, a strip of the window would stay black.
void fillWindow(NSWindow* window, NSView* view) {
    window->setContentView(view);
    const double scale = screenUnitsPerPoint(window);
    const NSPoint origin = InstanceMethod<"NSView", "frame", NSRect()>::send(view).origin;
    InstanceMethod<"NSView", "setFrameOrigin:", void(NSPoint)>::send(
        view, {origin.x / scale, origin.y / scale});
}

// A rectangle reports leaving alone; the moves inside come from the window.
void followPointer(NSView* view, NSWindow* window) {
    window->setAcceptsMouseMovedEvents(true);
    InstanceMethod<"NSView", "addTrackingRect:owner:userData:assumeInside:",
                   Integer(NSRect, NSObject*, void*, Bool)>::send(view, view->bounds(), view,
                                                                  nullptr, objc::toBool(false));
}

// GNUstep has no looks to choose from.
void forceLightLook(NSWindow*) {}

} // namespace platform::appkit
