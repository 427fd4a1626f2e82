#include "kovraUninstaller/engine/Verify.hpp"

#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"

namespace kovra {

Problems residuesIn(const UninstallInventory& inventory) {
    Problems lines;
    for (const InventoryItem& item : inventory.items) {
        if (!item.informational && item.id != InventoryItem::inputSourcesID) {
            lines.push_back(item.title + " (" + item.detail + ")");
        }
    }
    return lines;
}

std::string joinedResidues(const Problems& residues) {
    if (residues.empty()) {
        return "none";
    }
    std::string joined = residues.front();
    for (std::size_t i = 1; i < residues.size(); ++i) {
        joined.append(", ").append(residues[i]);
    }
    return joined;
}

platform::Task<Problems> UninstallEngine::verify() {
    const UninstallInventory inventory = co_await InventoryScanner::scan();
    Problems residues = residuesIn(inventory);
    UninstallerLog::file("  Verify: residues — " + joinedResidues(residues));
    co_return residues;
}

} // namespace kovra
