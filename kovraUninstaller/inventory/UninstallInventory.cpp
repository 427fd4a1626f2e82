#include "kovraUninstaller/inventory/UninstallInventory.hpp"

#include <algorithm>
#include <iterator>

namespace kovra {

std::vector<InventoryItem> UninstallInventory::itemsIn(InventoryItem::Category category) const {
    std::vector<InventoryItem> matching;
    std::ranges::copy_if(
        items, std::back_inserter(matching),
        [category](const InventoryItem& item) { return item.category == category; });
    return matching;
}

std::vector<InventoryItem::Category> UninstallInventory::categoriesPresent() const {
    std::vector<InventoryItem::Category> present;
    std::ranges::copy_if(
        allCases<InventoryItem::Category>, std::back_inserter(present),
        [this](InventoryItem::Category category) { return !itemsIn(category).empty(); });
    return present;
}

std::string UninstallInventory::summaryText() const {
    if (items.empty()) {
        return "Nothing found.";
    }
    std::string text;
    const auto beginLine = [&text] {
        if (!text.empty()) {
            text += '\n';
        }
    };
    for (const InventoryItem::Category category : categoriesPresent()) {
        beginLine();
        text.append("[").append(rawValue(category)).append("]");
        for (const InventoryItem& item : itemsIn(category)) {
            beginLine();
            text.append("  - ").append(item.title).append(": ").append(item.detail);
            if (item.requiresAdmin) {
                text += " (admin)";
            }
        }
    }
    return text;
}

} // namespace kovra
