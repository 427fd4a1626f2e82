#include "kovraUninstaller/inventory/InventoryScanner.hpp"

#include "kovraUninstaller/inventory/HIToolboxStore.hpp"
#include "kovraUninstaller/inventory/KeychainListing.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "kovraUninstaller/system/Shell.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/services/Async.hpp"
#include "platform/services/InputSources.hpp"
#include "platform/services/SystemFacts.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

namespace kovra {

using Category = InventoryItem::Category;

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
    std::set<std::string> accounts;
    const auto collect = [&](std::string_view lines) {
        for (const std::string_view account : productAccountsInKeychainListing(lines)) {
            accounts.emplace(account);
        }
    };
    try {
        const auto ended = Shell::run("/usr/bin/security", {"dump-keychain"}, collect);
        return ended.isUtf8 ? std::vector(accounts.begin(), accounts.end())
                            : std::vector<std::string>();
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

void InventoryBuilder::addApplicationIn(const std::string& folder, std::string_view shownFolder,
                                        std::string_view bundleName, std::string_view title,
                                        Removal removal) {
    const std::string path = folder + "/" + std::string(bundleName);
    if (platform::fileExists(path)) {
        inventory_.items.push_back({.id = "Apps:" + path,
                                    .category = Category::apps,
                                    .title = std::string(title),
                                    .detail = std::string(shownFolder),
                                    .requiresAdmin = removal == Removal::byAdministrator});
    }
}

void InventoryBuilder::addApplication(std::string_view bundleName, std::string_view title) {
    addApplicationIn(std::string(KovraFootprint::systemApplicationsDir),
                     KovraFootprint::systemApplicationsDir, bundleName, title,
                     Removal::byAdministrator);
    addApplicationIn(KovraFootprint::userApplicationsDir(), "~/Applications", bundleName, title,
                     Removal::byUser);
}

// A file name may be any bytes; the title must be valid UTF-8.
void InventoryBuilder::addInputMethods(const std::vector<std::string>& paths,
                                       std::string_view shownFolder, Removal removal) {
    for (const std::string& path : paths) {
        inventory_.items.push_back(
            {.id = "ime:" + path,
             .category = Category::inputMethod,
             .title = platform::repairedUtf8(platform::lastPathComponent(path)),
             .detail = std::string(shownFolder),
             .requiresAdmin = removal == Removal::byAdministrator});
    }
}

void InventoryBuilder::addCount(std::string_view id, Category category, std::string_view title,
                                std::size_t count, std::string_view singular,
                                std::string_view plural) {
    if (count == 0) {
        return;
    }
    inventory_.items.push_back(
        {.id = std::string(id),
         .category = category,
         .title = std::string(title),
         .detail = std::to_string(count) + " " + std::string(count == 1 ? singular : plural)});
}

void InventoryBuilder::addInputSources(std::size_t count) {
    addCount(InventoryItem::inputSourcesID, Category::inputMethod, "Input source registration",
             count, "source", "sources");
}

void InventoryBuilder::addKeyboardSettings(std::size_t count) {
    addCount("hitoolbox", Category::inputMethod, "Keyboard settings entries", count, "entry",
             "entries");
}

void InventoryBuilder::addData(std::size_t count) {
    addCount("data", Category::data, "Settings and app data", count, "item", "items");
}

void InventoryBuilder::addSystemTemporaryFolder() {
    const std::string path(KovraFootprint::systemTemporaryDir);
    if (platform::fileExists(path)) {
        inventory_.items.push_back({.id = "tmp:" + path,
                                    .category = Category::data,
                                    .title = "Temporary files",
                                    .detail = path,
                                    .requiresAdmin = true});
    }
}

void InventoryBuilder::addKeychain(std::size_t count) {
    addCount("keychain", Category::data, "Sign-in data (Keychain)", count, "item", "items");
}

void InventoryBuilder::addPermissionsWhenAnythingElse() {
    const auto counts = [](const InventoryItem& item) { return !item.informational; };
    if (std::ranges::any_of(inventory_.items, counts)) {
        inventory_.items.push_back({.id = "tcc",
                                    .category = Category::permissions,
                                    .title = "Microphone and Accessibility records",
                                    .detail = "Will be reset",
                                    .informational = true});
    }
}

UninstallInventory InventoryBuilder::take() {
    return std::move(inventory_);
}

} // namespace kovra
