#include "kovraUninstaller/inventory/InventoryBuilder.hpp"

#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <utility>

namespace kovra {

using Category = InventoryItem::Category;

void InventoryBuilder::addApplicationIn(const std::string& folder, std::string_view shownFolder,
                                        std::string_view bundleName, std::string_view title,
                                        Removal removal) {
    const std::string path = folder + "/" + std::string(bundleName);
    if (platform::fileExists(path)) {
        inventory.items.push_back({.id = "Apps:" + path,
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

// A name on disk may be any bytes; what people read is text.
void InventoryBuilder::addInputMethods(const std::vector<std::string>& paths,
                                       std::string_view shownFolder, Removal removal) {
    for (const std::string& path : paths) {
        inventory.items.push_back(
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
    inventory.items.push_back(
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
        inventory.items.push_back({.id = "tmp:" + path,
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
    if (std::ranges::any_of(inventory.items, counts)) {
        inventory.items.push_back({.id = "tcc",
                                   .category = Category::permissions,
                                   .title = "Microphone and Accessibility records",
                                   .detail = "Will be reset",
                                   .informational = true});
    }
}

UninstallInventory InventoryBuilder::take() {
    return std::move(inventory);
}

} // namespace kovra
