#include "kovraUninstaller/inventory/InventoryScanner.hpp"

#include "kovraUninstaller/inventory/InventoryBuilder.hpp"
#include "kovraUninstaller/inventory/KeychainListing.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/inventory/PropertyListText.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "kovraUninstaller/system/HIToolboxStore.hpp"
#include "kovraUninstaller/system/Shell.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/services/Async.hpp"
#include "platform/services/Directories.hpp"
#include "platform/services/InputSources.hpp"

#include <algorithm>
#include <array>
#include <system_error>

namespace kovra {

namespace {

std::vector<std::string> namesOrNone(const std::string& folder) {
    return platform::namesInFolder(folder).value_or(std::vector<std::string>());
}

} // namespace

std::vector<std::string> InventoryScanner::imeBundles(const std::string& folder) {
    std::vector<std::string> paths;
    for (const std::string& name : namesOrNone(folder)) {
        if (name.starts_with(KovraFootprint::inputMethodBundlePrefix) &&
            name.ends_with(KovraFootprint::bundleSuffix)) {
            paths.push_back(folder + "/" + name);
        }
    }
    return paths;
}

int InventoryScanner::registeredKovraSourceCount() {
    return platform::inputSourceCount(std::string(KovraFootprint::inputMethodBundleID));
}

int InventoryScanner::hiToolboxKovraEntryCount() {
    auto settings = HIToolboxStore::read();
    if (!settings) {
        return 0;
    }
    std::ptrdiff_t count = 0;
    for (const std::string_view key : KovraFootprint::hiToolboxKeys) {
        if (const auto* entries = inputSourceEntries(*settings, key)) {
            count += std::ranges::count_if(*entries, isProductEntry);
        }
    }
    return static_cast<int>(count);
}

std::vector<std::string> InventoryScanner::existingDataPaths() {
    const std::array candidates{
        KovraFootprint::legacyLaunchAgentPlists(), KovraFootprint::groupContainerDirs(),
        KovraFootprint::preferencePlists(),        KovraFootprint::logDirs(),
        KovraFootprint::libraryDataDirs(),         tempRemnants(),
    };
    std::vector<std::string> existing;
    for (const auto& list : candidates) {
        std::ranges::copy_if(list, std::back_inserter(existing), platform::fileExists);
    }
    return existing;
}

std::vector<std::string> InventoryScanner::tempRemnants() {
    const std::string folder = platform::temporaryDirectory();
    std::vector<std::string> paths;
    for (const std::string& name : namesOrNone(folder)) {
        const auto begins = [&](std::string_view prefix) { return name.starts_with(prefix); };
        if (name != KovraFootprint::stagingDirName &&
            std::ranges::any_of(KovraFootprint::tempDirPrefixes, begins)) {
            paths.push_back(folder + name);
        }
    }
    return paths;
}

std::vector<std::string> InventoryScanner::keychainKovraAccounts() {
    try {
        const auto listing = Shell::run("/usr/bin/security", {"dump-keychain"});
        return productAccountsInKeychainListing(listing.output);
    } catch (const std::system_error&) {
        return {};
    }
}

platform::Task<UninstallInventory> InventoryScanner::scan() {
    InventoryBuilder found;
    found.addApplication(KovraFootprint::mainAppBundleName, "kovra.app");
    found.addApplication(KovraFootprint::agentBundleName, "KovraAgent.app (old version)");
    found.addInputMethods(imeBundles(std::string(KovraFootprint::systemInputMethodsDir)),
                          KovraFootprint::systemInputMethodsDir, Removal::byAdministrator);
    found.addInputMethods(imeBundles(KovraFootprint::userInputMethodsDir()),
                          "~/Library/Input Methods", Removal::byUser);
    found.addInputSources(co_await platform::runOnMain(registeredKovraSourceCount));
    found.addKeyboardSettings(hiToolboxKovraEntryCount());
    found.addData(existingDataPaths().size());
    found.addSystemTemporaryFolder();
    found.addKeychain(keychainKovraAccounts().size());
    found.addPermissionsWhenAnythingElse();

    UninstallInventory inventory = found.take();
    UninstallerLog::file("Preflight scan:\n" + inventory.summaryText());
    co_return inventory;
}

} // namespace kovra
