#pragma once

#include "kovraUninstaller/inventory/UninstallInventory.hpp"
#include "platform/base/Task.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kovra {

/// Finds what the product has left on this Mac. Only reads. No instances. Every failure inside
/// counts as nothing found. Blocks the calling thread.
class InventoryScanner {
  public:
    InventoryScanner() = delete;

    /// Runs every probe, in the order of the resulting items, and logs the summary. Counts the
    /// input sources on the main thread, and runs everything else on the thread that awaits it or
    /// in the background. Does not throw.
    static platform::Task<UninstallInventory> scan();

    /// The paths of the product's input-method bundles in one folder, in directory order.
    [[nodiscard]] static std::vector<std::string> imeBundles(const std::string& folder);

    /// The number of input sources registered for the product's input method, disabled ones
    /// included. Main thread only.
    [[nodiscard]] static int registeredKovraSourceCount();

    /// The number of the product's entries in the keyboard settings; an entry under two keys counts
    /// twice.
    [[nodiscard]] static int hiToolboxKovraEntryCount();

    /// The product's files and folders that exist. Follows symbolic links.
    [[nodiscard]] static std::vector<std::string> existingDataPaths();

    /// The product's folders in the temporary folder, in directory order.
    [[nodiscard]] static std::vector<std::string> tempRemnants();

    /// The account names of the product's sign-in items, each once, sorted.
    [[nodiscard]] static std::vector<std::string> keychainKovraAccounts();
};

/// Whose rights the removal of an item needs.
enum class Removal { byUser, byAdministrator };

/// Makes inventory items of what the probes found, in the order of the calls. A count of 0 and a
/// path that does not exist add nothing.
class InventoryBuilder {
  public:
    /// The bundle in the system's and in the user's Applications folder.
    void addApplication(std::string_view bundleName, std::string_view title);

    void addInputMethods(const std::vector<std::string>& paths, std::string_view shownFolder,
                         Removal removal);

    void addInputSources(std::size_t count);
    void addKeyboardSettings(std::size_t count);
    void addData(std::size_t count);
    void addSystemTemporaryFolder();
    void addKeychain(std::size_t count);

    /// Privacy records cannot be read: they are listed when anything else was found.
    void addPermissionsWhenAnythingElse();

    [[nodiscard]] UninstallInventory take();

  private:
    void addApplicationIn(const std::string& folder, std::string_view shownFolder,
                          std::string_view bundleName, std::string_view title, Removal removal);
    void addCount(std::string_view id, InventoryItem::Category category, std::string_view title,
                  std::size_t count, std::string_view singular, std::string_view plural);

    UninstallInventory inventory_;
};

} // namespace kovra
