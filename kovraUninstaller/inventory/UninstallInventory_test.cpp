#include "kovraUninstaller/inventory/UninstallInventory.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using Category = InventoryItem::Category;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

InventoryItem item(const std::string& id, Category category, bool requiresAdmin = false) {
    return {.id = id,
            .category = category,
            .title = "Title of " + id,
            .detail = "detail of " + id,
            .requiresAdmin = requiresAdmin,
            .informational = false};
}

std::vector<std::string> idsOf(const std::vector<InventoryItem>& items) {
    std::vector<std::string> ids;
    ids.reserve(items.size());
    for (const InventoryItem& each : items) {
        ids.push_back(each.id);
    }
    return ids;
}

TEST(InventoryCategory, ComesInDeclarationOrderWithItsHeadingAsRawValue) {
    EXPECT_THAT(allCases<Category>, ElementsAre(Category::apps, Category::inputMethod,
                                                Category::data, Category::permissions));
    EXPECT_EQ(rawValue(Category::apps), "Apps");
    EXPECT_EQ(rawValue(Category::inputMethod), "Input method");
    EXPECT_EQ(rawValue(Category::data), "Data & settings");
    EXPECT_EQ(rawValue(Category::permissions), "Permissions");
}

TEST(InventoryCategory, IsFoundByItsRawValueAndByNothingElse) {
    for (const Category category : allCases<Category>) {
        EXPECT_EQ(fromRawValue<Category>(rawValue(category)), category);
    }
    EXPECT_EQ(fromRawValue<Category>("apps"), std::nullopt);
    EXPECT_EQ(fromRawValue<Category>("Apps "), std::nullopt);
    EXPECT_EQ(fromRawValue<Category>(""), std::nullopt);
}

TEST(InventoryCategory, HashesAsItsRawValue) {
    EXPECT_EQ(std::hash<Category>{}(Category::data), std::hash<std::string>{}("Data & settings"));
    EXPECT_NE(std::hash<Category>{}(Category::data), std::hash<Category>{}(Category::apps));
}

TEST(UninstallInventory, WithoutItemsSaysThatNothingWasFound) {
    const UninstallInventory inventory;
    EXPECT_EQ(inventory.summaryText(), "Nothing found.");
    EXPECT_THAT(inventory.categoriesPresent(), IsEmpty());
    EXPECT_THAT(inventory.itemsIn(Category::apps), IsEmpty());
}

TEST(UninstallInventory, ListsAnInformationalItemLikeAnyOther) {
    const UninstallInventory inventory{{{.id = "tcc",
                                         .category = Category::permissions,
                                         .title = "Microphone and Accessibility records",
                                         .detail = "Will be reset",
                                         .requiresAdmin = false,
                                         .informational = true}}};
    EXPECT_EQ(inventory.summaryText(),
              "[Permissions]\n  - Microphone and Accessibility records: Will be reset");
}

TEST(UninstallInventory, GroupsInFixedOrderAndKeepsTheAppendedOrderWithinAGroup) {
    const UninstallInventory inventory{{item("p", Category::permissions),
                                        item("d2", Category::data), item("a", Category::apps),
                                        item("d1", Category::data)}};
    EXPECT_THAT(inventory.categoriesPresent(),
                ElementsAre(Category::apps, Category::data, Category::permissions));
    EXPECT_THAT(idsOf(inventory.itemsIn(Category::data)), ElementsAre("d2", "d1"));
    EXPECT_THAT(inventory.itemsIn(Category::inputMethod), IsEmpty());
    EXPECT_EQ(inventory.summaryText(), "[Apps]\n"
                                       "  - Title of a: detail of a\n"
                                       "[Data & settings]\n"
                                       "  - Title of d2: detail of d2\n"
                                       "  - Title of d1: detail of d1\n"
                                       "[Permissions]\n"
                                       "  - Title of p: detail of p");
}

TEST(UninstallInventory, MarksWhatNeedsAnAdministratorDirectlyAfterTheDetail) {
    const UninstallInventory inventory{
        {item("sys", Category::inputMethod, true), item("own", Category::inputMethod, false)}};
    EXPECT_EQ(inventory.summaryText(), "[Input method]\n"
                                       "  - Title of sys: detail of sys (admin)\n"
                                       "  - Title of own: detail of own");
}

} // namespace
} // namespace kovra
