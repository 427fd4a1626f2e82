#pragma once

#include "kovraUninstaller/flow/UninstallService.hpp"

#include <memory>
#include <string_view>
#include <utility>

namespace kovra::testing {

enum class Prompt { granted, refused };

inline UninstallInventory oneItem() {
    return {{{.id = "item",
              .category = InventoryItem::Category::apps,
              .title = "kovra.app",
              .detail = "/Applications"}}};
}

inline platform::Task<UninstallInventory> found(UninstallInventory inventory) {
    co_return inventory;
}

inline platform::Task<Problems> ended(Prompt prompt) {
    if (prompt == Prompt::refused) {
        throw EngineError::adminCancelled();
    }
    co_return Problems();
}

/// A service whose scan finds the inventory and whose steps do nothing and succeed, unless the
/// prompt is refused.
inline std::unique_ptr<UninstallService> harmlessService(UninstallInventory inventory,
                                                         Prompt prompt = Prompt::granted) {
    using Engine = UninstallEngine;
    const auto nothing = [](Engine&) { return Problems(); };
    const auto taskOfNothing = [](Engine&) { return ended(Prompt::granted); };
    return std::make_unique<UninstallService>(
        UninstallService::Operations{
            .stopProcesses = nothing,
            .removeInputSourceState = taskOfNothing,
            .removeApps = [prompt](Engine&, bool) { return ended(prompt); },
            .removeData = nothing,
            .resetPermissions = nothing,
            .refreshSystemUI = nothing,
            .verify = taskOfNothing,
        },
        [inventory] { return found(inventory); }, [](std::string_view) {});
}

} // namespace kovra::testing
