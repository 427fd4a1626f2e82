#pragma once

#include "kovraUninstaller/inventory/UninstallInventory.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kovra {

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
