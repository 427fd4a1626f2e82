#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/PrivilegedRunner.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/engine/WindowMover.hpp"
#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/services/MainBundle.hpp"

namespace kovra {

namespace {

platform::Task<void> removeSystemBundles() {
    const auto script = platform::mainBundleResource("uninstall", "sh");
    if (!script) {
        throw EngineError::failed("The uninstaller is damaged (missing uninstall.sh). "
                                  "Please download it again.");
    }
    co_await moveWindowAside();
    const RecenterWindowAtScopeEnd recenterWindow;
    co_await PrivilegedRunner::runScriptAsAdmin(*script);
    UninstallerLog::file("  Apps: system-level bundles removed (admin)");
}

std::vector<std::string> userBundles() {
    auto bundles = InventoryScanner::imeBundles(KovraFootprint::userInputMethodsDir());
    const std::string applications = KovraFootprint::userApplicationsDir();
    bundles.push_back(applications + "/" + std::string(KovraFootprint::mainAppBundleName));
    bundles.push_back(applications + "/" + std::string(KovraFootprint::agentBundleName));
    return bundles;
}

} // namespace

platform::Task<Problems> UninstallEngine::removeApps(bool needsAdmin) {
    if (needsAdmin) {
        co_await removeSystemBundles();
    } else {
        UninstallerLog::file("  Apps: no system-level bundles found, skipping admin prompt");
    }
    StepReport report("Apps");
    removeExisting(userBundles(), report);
    UninstallerLog::file("  Apps: user-level bundles removed — OK");
    co_return report.problems();
}

} // namespace kovra
