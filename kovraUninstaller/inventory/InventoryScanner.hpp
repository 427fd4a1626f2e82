#pragma once

#include "kovraUninstaller/inventory/UninstallInventory.hpp"
#include "platform/base/Task.hpp"

#include <string>
#include <vector>

namespace kovra {

/// Looks at the Mac and says what of the product is there. Only reads. No instances; every failure
/// inside counts as nothing found. What blocks runs on the calling thread.
class InventoryScanner {
  public:
    InventoryScanner() = delete;

    /// Runs every probe, in the order in which the items then stand, and records the summary in
    /// the log. Visits the main thread once, for the input sources; otherwise it stays on the
    /// thread that awaits it or in the background. Does not throw.
    static platform::Task<UninstallInventory> scan();

    /// The product's input-method bundles inside one folder, in the order of the listing.
    [[nodiscard]] static std::vector<std::string> imeBundles(const std::string& folder);

    /// How many input sources the system has for the product's input method, disabled ones
    /// included. Main thread only.
    [[nodiscard]] static int registeredKovraSourceCount();

    /// How many entries of the keyboard settings are the product's; one under two keys counts
    /// twice.
    [[nodiscard]] static int hiToolboxKovraEntryCount();

    /// The product's files and folders that exist, links followed.
    [[nodiscard]] static std::vector<std::string> existingDataPaths();

    /// What the product left in the temporary folder, in the order of the listing.
    [[nodiscard]] static std::vector<std::string> tempRemnants();

    /// The account names of the product's sign-in items, each once, sorted.
    [[nodiscard]] static std::vector<std::string> keychainKovraAccounts();
};

} // namespace kovra
