#include "kovraUninstaller/engine/Residues.hpp"

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

} // namespace kovra
