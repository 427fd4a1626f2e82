#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/Trim.hpp"

#include <set>

namespace kovra {

namespace {

void deletePreferenceDomains() {
    const auto deleteDomains = [](const auto& domains) {
        for (const std::string_view domain : domains) {
            runBestEffort("/usr/bin/defaults", {"delete", std::string(domain)});
        }
    };
    deleteDomains(KovraFootprint::appGroupIDs);
    deleteDomains(KovraFootprint::currentBundleIDs);
}

bool deleteOneKeychainItem(const std::string& account) {
    const auto deleted =
        runBestEffort("/usr/bin/security", {"delete-generic-password", "-a", account});
    return deleted && deleted->terminationStatus == 0;
}

// The tool deletes one item at a time, and several may have the same account name.
void deleteKeychainItems(const std::string& account) {
    if (!deleteOneKeychainItem(account)) {
        return;
    }
    while (deleteOneKeychainItem(account)) {
    }
    UninstallerLog::file("  Data: removed Keychain item " + account);
}

void deleteKeychainItems() {
    const auto found = InventoryScanner::keychainKovraAccounts();
    std::set<std::string> accounts(found.begin(), found.end());
    accounts.insert(KovraFootprint::knownKeychainAccounts.begin(),
                    KovraFootprint::knownKeychainAccounts.end());
    for (const std::string& account : accounts) {
        deleteKeychainItems(account);
    }
}

void removeInputDataCaches(const std::optional<std::string>& folder, StepReport& report) {
    if (!folder) {
        return;
    }
    for (const std::string_view name : KovraFootprint::intlDataCacheNames) {
        removeIfExists(*folder + "/" + std::string(name), report);
    }
}

} // namespace

Problems UninstallEngine::removeData() {
    StepReport report("Data");
    removeExisting(KovraFootprint::legacyLaunchAgentPlists(), report);
    removeExisting(KovraFootprint::groupContainerDirs(), report);
    deletePreferenceDomains();
    removeExisting(KovraFootprint::preferencePlists(), report);
    removeExisting(KovraFootprint::logDirs(), report);
    removeExisting(KovraFootprint::libraryDataDirs(), report);
    deleteKeychainItems();
    removeExisting(InventoryScanner::tempRemnants(), report);
    removeInputDataCaches(darwinUserCacheDirectory(), report);
    restartPreferencesDaemon();
    UninstallerLog::file(std::string("  Data: settings and data removed — ") +
                         (report.problems().empty() ? "OK" : "WARN"));
    return report.problems();
}

std::optional<std::string> UninstallEngine::darwinUserCacheDirectory() const {
    const auto printed = runBestEffort("/usr/bin/getconf", {"DARWIN_USER_CACHE_DIR"});
    if (!printed) {
        return std::nullopt;
    }
    std::string_view folder = platform::trimmed(printed->output);
    if (folder.empty()) {
        return std::nullopt;
    }
    if (folder.ends_with('/')) {
        folder.remove_suffix(1);
    }
    return std::string(folder);
}

} // namespace kovra
