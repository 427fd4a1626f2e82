#include "kovraUninstaller/app/AppDelegate.hpp"
#include "kovraUninstaller/app/MainMenu.hpp"
#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "platform/appkit/ApplicationStart.hpp"
#include "platform/base/Task.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/ProcessStart.hpp"
#include "platform/services/Queues.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

namespace kovra {

namespace {

/// The application: its delegate, an `AppDelegate`, makes the window.
class KovraUninstallerApp {
  public:
    KovraUninstallerApp() = delete;

    /// Runs until the application terminates, which ends the process with status 0. Returns only
    /// when there is no display: a status other than 0, after saying so on standard error.
    [[nodiscard]] static int run();
};

int KovraUninstallerApp::run() {
    platform::appkit::NSApplication* application = platform::appkit::startApplication();
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

platform::Task<void> scanPrintAndExit() {
    const UninstallInventory inventory = co_await InventoryScanner::scan();
    const std::string text = inventory.summaryText() + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    std::exit(EXIT_SUCCESS);
}

/// Scans, prints the summary and a line feed to standard output, and ends the process with status
/// 0. Needs no display.
[[noreturn]] void printInventoryAndExit() {
    platform::start(scanPrintAndExit());
    platform::runMainLoop();
}

bool asksForInventory(std::span<char*> arguments) {
    for (const char* argument : arguments.subspan(arguments.empty() ? 0 : 1)) {
        if (std::strcmp(argument, "--inventory") == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

} // namespace kovra

int main(int argc, char** argv) {
    platform::beginProgram(argv);
    const platform::objc::AutoreleasePool pool;
    if (kovra::asksForInventory({argv, static_cast<std::size_t>(argc)})) {
        kovra::printInventoryAndExit();
    }
    return kovra::KovraUninstallerApp::run();
}
