#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kovra {

/// The cases of an enumeration, each with its raw value, in declaration order. An enumeration
/// with raw values specialises it with a `static constexpr` array of pairs called `table`.
template <typename Enumeration>
struct CaseNames;

/// The raw value of a case; it lives for the whole program. Any thread.
template <typename Enumeration>
[[nodiscard]] constexpr std::string_view rawValue(Enumeration value) {
    for (const auto& [candidate, name] : CaseNames<Enumeration>::table) {
        if (candidate == value) {
            return name;
        }
    }
    return {};
}

/// The case with exactly this raw value; nothing for any other text. Any thread.
template <typename Enumeration>
[[nodiscard]] constexpr std::optional<Enumeration> fromRawValue(std::string_view name) {
    for (const auto& [candidate, candidateName] : CaseNames<Enumeration>::table) {
        if (candidateName == name) {
            return candidate;
        }
    }
    return std::nullopt;
}

/// All cases, in declaration order. A table in any other order does not compile.
template <typename Enumeration>
inline constexpr auto allCases = [] {
    constexpr auto& table = CaseNames<Enumeration>::table;
    std::array<Enumeration, table.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i) {
        cases[i] = static_cast<Enumeration>(i);
    }
    static_assert([] {
        for (std::size_t i = 0; i < table.size(); ++i) {
            if (table[i].first != static_cast<Enumeration>(i)) {
                return false;
            }
        }
        return true;
    }());
    return cases;
}();

/// One thing that the preflight scan found. A plain value.
struct InventoryItem {
    /// The group that an item is listed under. The raw value is also the heading shown to people;
    /// declaration order is the order of every grouped output.
    enum class Category { apps, inputMethod, data, permissions };

    /// The identifier of the item for registered input sources. The system drops registrations only
    /// at the next login, so this item is never a residue.
    static constexpr const char* inputSourcesID = "tis";

    std::string id;             ///< stable, unique within one inventory
    Category category{};        ///< the group it is listed under
    std::string title;          ///< short name of what was found
    std::string detail;         ///< one-line explanation
    bool requiresAdmin = false; ///< removing it needs administrator rights
    bool informational = false; ///< alone it does not count as something found

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

/// What the preflight scan found, in the order of its probes. A plain value; any thread.
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
