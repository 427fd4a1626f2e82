// A minimal program with a window: started like the uninstaller, it opens an empty window of the
// same size in the middle of the screen and waits.

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
    // GNUstep sometimes misses the display's expose event while it waits.
    appkit::RepeatingTimer looksAround(appkit::wakeEventLoop);
    looksAround.start();
    application->run();
}
