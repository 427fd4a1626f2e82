// The least that a program with a window does: started as the uninstaller is, it opens an empty one
// of the same size in the middle of the screen and waits.

#include "platform/appkit/ApplicationStart.hpp"
#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/RepeatingTimer.hpp"
#include "platform/appkit/Toolkit.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/ProcessStart.hpp"

#include <unistd.h>

int main(int, char** argv) {
    using namespace platform;
    using appkit::NSWindow;
    initializeProcess(argv, environ);
    const objc::AutoreleasePool pool;
    appkit::NSApplication* application = appkit::startApplication();
    if (application == nullptr) {
        return 1;
    }
    const auto window = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{0, 0}, {480, 450}}, NSWindow::titled | NSWindow::closable, NSWindow::backingBuffered,
        false));
    window->center();
    window->makeKeyAndOrderFront(nullptr);
    application->activateIgnoringOtherApps(true);
    // Now and then the toolkit sleeps over the display's request to draw.
    appkit::RepeatingTimer looksAround(appkit::wakeEventLoop);
    looksAround.start();
    application->run();
}
