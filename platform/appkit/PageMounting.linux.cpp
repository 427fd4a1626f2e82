#include "platform/appkit/PageMounting.hpp"

namespace platform::appkit {

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
