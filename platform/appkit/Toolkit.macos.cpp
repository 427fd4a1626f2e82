#include "platform/appkit/Toolkit.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSAppearance.hpp"
#include "platform/appkit/NSTrackingArea.hpp"
#include "platform/appkit/NSWorkspace.hpp"

namespace platform::appkit {

// AppKit's run loop wakes by itself.
void wakeEventLoop() {}

declarative::MotionPreference motionPreference() {
    return NSWorkspace::sharedWorkspace()->shouldReduceMotion()
               ? declarative::MotionPreference::reduced
               : declarative::MotionPreference::full;
}

double screenUnitsPerPoint(const NSWindow*) {
    return 1;
}

void fillWindow(NSWindow* window, NSView* view) {
    window->setContentView(view);
}

void followPointer(NSView* view, NSWindow*) {
    const auto area = objc::adopt(NSTrackingArea::alloc()->initWithRect(
        view->bounds(),
        NSTrackingArea::enteredAndExited | NSTrackingArea::moved |
            NSTrackingArea::activeInActiveApplication | NSTrackingArea::inVisibleRect,
        view, nullptr));
    view->addTrackingArea(area.get());
}

void forceLightLook(NSWindow* window) {
    window->setAppearance(NSAppearance::appearanceNamed(NSAppearanceNameAqua));
}

} // namespace platform::appkit
