#pragma once

#include "kovraUninstaller/inventory/UninstallInventory.hpp"
#include "platform/base/Task.hpp"

#include <cstddef>
#include <string>
#include <string_view>
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

/// Who may remove an item.
enum class Removal { byUser, byAdministrator };

/// Turns what the probes found into the items that people read, in the order of the calls. A probe
/// that found nothing adds nothing.
class InventoryBuilder {
  public:
    /// The bundle in the system's and in the user's Applications folder, where it exists.
    void addApplication(std::string_view bundleName, std::string_view title);

    void addInputMethods(const std::vector<std::string>& paths, std::string_view shownFolder,
                         Removal removal);

    void addInputSources(std::size_t count);
    void addKeyboardSettings(std::size_t count);
    void addData(std::size_t count);
    void addSystemTemporaryFolder();
    void addKeychain(std::size_t count);

    /// Privacy records cannot be read, so they are listed when anything else was found.
    void addPermissionsWhenAnythingElse();

    [[nodiscard]] UninstallInventory take();

  private:
    void addApplicationIn(const std::string& folder, std::string_view shownFolder,
                          std::string_view bundleName, std::string_view title, Removal removal);
    void addCount(std::string_view id, InventoryItem::Category category, std::string_view title,
                  std::size_t count, std::string_view singular, std::string_view plural);

    UninstallInventory inventory;
};

} // namespace kovra
