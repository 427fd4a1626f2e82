#include "kovraUninstaller/app/MainWindow.hpp"

#include "kovraUninstaller/app/WindowPlacement.hpp"
#include "kovraUninstaller/ui/UninstallerTheme.hpp"
#include "kovraUninstaller/ui/UninstallerView.hpp"
#include "platform/appkit/NSColor.hpp"
#include "platform/appkit/Toolkit.hpp"
#include "platform/foundation/Conversions.hpp"

namespace kovra {

using namespace platform;
using appkit::NSScreen;
using appkit::NSWindow;

namespace {

// Where the title cannot be hidden, a space keeps the toolkit from showing the program's name.
void hideTitle(NSWindow* window) {
    if (appkit::responds<"setTitleVisibility:">(window)) {
        window->setTitle(foundation::toNSString(""));
        window->setTitleVisibility(NSWindow::titleHidden);
    } else {
        window->setTitle(foundation::toNSString(" "));
    }
}

void place(NSWindow* window) {
    if (const NSScreen* screen = NSScreen::mainScreen()) {
        const double scale = appkit::screenUnitsPerPoint(window);
        const auto size = UninstallerView::size;
        window->setFrameOrigin(appkit::toNSPoint(launchOrigin(
            appkit::toRect(screen->visibleFrame()), {size.width * scale, size.height * scale})));
    } else {
        window->center();
    }
}

} // namespace

objc::Retained<NSWindow> makeMainWindow() {
    const auto size = UninstallerView::size;
    auto window = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{0, 0}, {size.width, size.height}}, NSWindow::titled | NSWindow::closable,
        NSWindow::backingBuffered, false));
    hideTitle(window.get());
    if (appkit::responds<"setRestorable:">(window.get())) {
        window->setRestorable(false);
    }
    window->setBackgroundColor(appkit::toNSColor(UninstallerTheme::background));
    window->setLevel(NSWindow::levelNormal);
    window->setReleasedWhenClosed(false);
    place(window.get());
    return window;
}

} // namespace kovra
