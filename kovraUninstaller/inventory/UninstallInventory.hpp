#pragma once

#include "kovraUninstaller/inventory/CaseNames.hpp"

#include <functional>
#include <string>
#include <vector>

namespace kovra {

/// One thing that the preflight scan found. A plain value.
struct InventoryItem {
    /// The group that an item is listed under. The raw value is also the heading shown to people;
    /// declaration order is the order of every grouped output.
    enum class Category { apps, inputMethod, data, permissions };

    /// The identifier of the item that counts registered input sources. The system forgets them
    /// only at the next login, so it is never a residue.
    static constexpr const char* inputSourcesID = "tis";

    std::string id;             ///< stable, unique within one inventory
    Category category{};        ///< the group it is listed under
    std::string title;          ///< short name of what was found
    std::string detail;         ///< one-line explanation
    bool requiresAdmin = false; ///< removing it needs administrator rights
    bool informational = false; ///< alone it does not make the scan count as having found something

    friend bool operator==(const InventoryItem&, const InventoryItem&) = default;
};

template <>
struct CaseNames<InventoryItem::Category> {
    static constexpr std::array<std::pair<InventoryItem::Category, std::string_view>, 4> table{{
        {InventoryItem::Category::apps, "Apps"},
        {InventoryItem::Category::inputMethod, "Input method"},
        {InventoryItem::Category::data, "Data & settings"},
        {InventoryItem::Category::permissions, "Permissions"},
    }};
};

/// What the preflight scan found, in the order in which the scanner came upon it. A plain value
/// that touches nothing outside itself; any thread.
struct UninstallInventory {
    std::vector<InventoryItem> items;

    /// The items of that category, in their order within `items`.
    [[nodiscard]] std::vector<InventoryItem> itemsIn(InventoryItem::Category category) const;

    /// The categories with at least one item, each once, in declaration order.
    [[nodiscard]] std::vector<InventoryItem::Category> categoriesPresent() const;

    /// The listing that the log and the terminal show: a heading in brackets for each category
    /// and a line for each of its items, joined by line feeds with none at the end;
    /// "Nothing found." when there is no item.
    [[nodiscard]] std::string summaryText() const;

    friend bool operator==(const UninstallInventory&, const UninstallInventory&) = default;
};

} // namespace kovra

/// A category hashes as its raw value does.
template <>
struct std::hash<kovra::InventoryItem::Category> {
    std::size_t operator()(kovra::InventoryItem::Category category) const noexcept {
        return std::hash<std::string_view>{}(kovra::rawValue(category));
    }
};
