#include "kovraUninstaller/app/KovraUninstallerApp.hpp"

#include "kovraUninstaller/app/AppDelegate.hpp"
#include "kovraUninstaller/app/MainMenu.hpp"
#include "platform/appkit/ApplicationStart.hpp"

#include <cstdio>
#include <cstdlib>

namespace kovra {

using platform::appkit::NSApplication;

int KovraUninstallerApp::run() {
    NSApplication* application = platform::appkit::startApplication();
    if (application == nullptr) {
        std::fputs("kovra Uninstaller: its window cannot be opened, because there is no display. "
                   "Nothing was removed. --inventory lists what is installed without a display.\n",
                   stderr);
        return EXIT_FAILURE;
    }
    // Never destroyed: work in the background may still ask for it while the process exits.
    static AppDelegate& appDelegate = *new AppDelegate(application);
    static_cast<void>(appDelegate);
    application->setMainMenu(makeMainMenu());
    application->run();
    return EXIT_SUCCESS;
}

} // namespace kovra
