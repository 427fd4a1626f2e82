#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"

namespace kovra {

namespace {

// The identifier is never empty: without one the tool resets every application.
void resetService(std::string_view service, const auto& bundleIDs) {
    for (const std::string_view bundleID : bundleIDs) {
        runBestEffort("/usr/bin/tccutil", {"reset", std::string(service), std::string(bundleID)});
    }
}

} // namespace

Problems UninstallEngine::resetPermissions() {
    for (const std::string_view service : KovraFootprint::tccServices) {
        resetService(service, KovraFootprint::currentBundleIDs);
        resetService(service, KovraFootprint::legacyBundleIDs);
    }
    UninstallerLog::file("  Permissions: TCC records reset — OK");
    return {};
}

} // namespace kovra
