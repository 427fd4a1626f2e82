#include "platform/appkit/Toolkit.hpp"

#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSEvent.hpp"
#include "platform/services/MainQueue.hpp"

namespace platform::appkit {

// GNUstep's loop sleeps on its sockets and looks at little else. What a timer has changed would be
// drawn when the next event comes; and events that arrive while a picture is being sent lie in the
// connection's own queue, so that a click would wait for whatever the pointer does next. Work in
// the main queue wakes the loop, and an event that means nothing has it look everywhere.
void wakeEventLoop() {
    NSApplication::sharedApplication()->postEvent(NSEvent::applicationDefined(), false);
    mainQueue().post([] {});
}

// GNUstep has no such setting.
declarative::MotionPreference motionPreference() {
    return declarative::MotionPreference::full;
}

// GNUstep tells them in pixels, and has a person say how many make a point.
double screenUnitsPerPoint(const NSWindow* window) {
    return InstanceMethod<"NSWindow", "userSpaceScaleFactor", CGFloat()>::send(window);
}

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
