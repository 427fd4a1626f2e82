#include "platform/appkit/Toolkit.hpp"

#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSEvent.hpp"
#include "platform/services/Queues.hpp"

namespace platform::appkit {

// GNUstep's run loop blocks in poll on its file descriptors. A view that a timer marked for drawing
// would be drawn at the next event only; and events that the X connection reads while it sends a
// picture stay in its queue, so that a click would wait for the next event. Work in the main queue
// makes a descriptor readable, and an application-defined event has the loop check everything.
void wakeEventLoop() {
    NSApplication::sharedApplication()->postEvent(NSEvent::applicationDefined(), false);
    mainQueue().post([] {});
}

// GNUstep has no such setting.
declarative::MotionPreference motionPreference() {
    return declarative::MotionPreference::full;
}

// GNUstep's window coordinates are pixels; the scale is one of its user defaults.
double screenUnitsPerPoint(const NSWindow* window) {
    return InstanceMethod<"NSWindow", "userSpaceScaleFactor", CGFloat()>::send(window);
}

// GNUstep takes the width of the window's borders, which is in pixels, for points: at a scale above
// 1 the content would start too far from them, and leave a black strip.
void fillWindow(NSWindow* window, NSView* view) {
    window->setContentView(view);
    const double scale = screenUnitsPerPoint(window);
    const NSPoint origin = InstanceMethod<"NSView", "frame", NSRect()>::send(view).origin;
    InstanceMethod<"NSView", "setFrameOrigin:", void(NSPoint)>::send(
        view, {origin.x / scale, origin.y / scale});
}

// The tracking rectangle gives mouseEntered: and mouseExited: only; the window gives mouseMoved:.
void followPointer(NSView* view, NSWindow* window) {
    window->setAcceptsMouseMovedEvents(true);
    InstanceMethod<"NSView", "addTrackingRect:owner:userData:assumeInside:",
                   Integer(NSRect, NSObject*, void*, Bool)>::send(view, view->bounds(), view,
                                                                  nullptr, objc::toBool(false));
}

// GNUstep has no appearances.
void forceLightLook(NSWindow*) {}

} // namespace platform::appkit
