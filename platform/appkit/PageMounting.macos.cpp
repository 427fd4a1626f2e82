#include "platform/appkit/PageMounting.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSAppearance.hpp"
#include "platform/appkit/NSTrackingArea.hpp"

namespace platform::appkit {

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
