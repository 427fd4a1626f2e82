#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <unistd.h>

namespace kovra {

// How GoogleTest prints an item.
void PrintTo(const InventoryItem& item, std::ostream* stream) {
    *stream << item.id << " [" << rawValue(item.category) << "] " << item.title << ": "
            << item.detail << (item.requiresAdmin ? " (admin)" : "")
            << (item.informational ? " (informational)" : "");
}

namespace {

using Category = InventoryItem::Category;
using platform::testing::holdsInForkedProcess;
using platform::testing::PrivateMounts;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

InventoryItem permissions() {
    return {.id = "tcc",
            .category = Category::permissions,
            .title = "Microphone and Accessibility records",
            .detail = "Will be reset",
            .requiresAdmin = false,
            .informational = true};
}

class Builder : public ::testing::Test {
  protected:
    std::vector<InventoryItem> items() { return found.take().items; }

    platform::testing::TemporaryFolder folder;
    const platform::testing::EnvironmentVariable home{"HOME", folder.path().c_str()};
    InventoryBuilder found;
};

TEST_F(Builder, AddsAnApplicationThatExists) {
    folder.folder("Applications/kovra.app");
    found.addApplication("kovra.app", "kovra.app");
    EXPECT_THAT(items(),
                ElementsAre(InventoryItem{.id = "Apps:" + folder.path("Applications/kovra.app"),
                                          .category = Category::apps,
                                          .title = "kovra.app",
                                          .detail = "~/Applications",
                                          .requiresAdmin = false,
                                          .informational = false}));
}

TEST_F(Builder, AddsNoApplicationThatIsMissingOrADanglingLink) {
    folder.link("Applications/kovra.app", "gone");
    found.addApplication("kovra.app", "kovra.app");
    found.addApplication("KovraAgent.app", "KovraAgent.app (old version)");
    EXPECT_THAT(items(), IsEmpty());
}

TEST_F(Builder, AddsAnItemForEachInputMethod) {
    found.addInputMethods({"/Library/Input Methods/kovraInput.app"}, "/Library/Input Methods",
                          Removal::byAdministrator);
    found.addInputMethods({"/u/kovraInput 2.app", "/u/kovraInput\xFF.app"},
                          "~/Library/Input Methods", Removal::byUser);
    const InventoryItem system{.id = "ime:/Library/Input Methods/kovraInput.app",
                               .category = Category::inputMethod,
                               .title = "kovraInput.app",
                               .detail = "/Library/Input Methods",
                               .requiresAdmin = true,
                               .informational = false};
    const InventoryItem second{.id = "ime:/u/kovraInput 2.app",
                               .category = Category::inputMethod,
                               .title = "kovraInput 2.app",
                               .detail = "~/Library/Input Methods",
                               .requiresAdmin = false,
                               .informational = false};
    const InventoryItem noText{.id = "ime:/u/kovraInput\xFF.app",
                               .category = Category::inputMethod,
                               .title = "kovraInput\uFFFD.app",
                               .detail = "~/Library/Input Methods",
                               .requiresAdmin = false,
                               .informational = false};
    EXPECT_THAT(items(), ElementsAre(system, second, noText));
}

TEST_F(Builder, CountsInTheSingularAndThePluralAndAddsNothingForNone) {
    found.addInputSources(1);
    found.addInputSources(2);
    found.addKeyboardSettings(1);
    found.addKeyboardSettings(12345);
    found.addData(1);
    found.addData(33);
    found.addKeychain(1);
    found.addKeychain(3);
    for (const auto add :
         {&InventoryBuilder::addInputSources, &InventoryBuilder::addKeyboardSettings,
          &InventoryBuilder::addData, &InventoryBuilder::addKeychain}) {
        (found.*add)(0);
    }
    const auto counted = [](const char* id, Category category, const char* title,
                            const char* detail) {
        return InventoryItem{.id = id,
                             .category = category,
                             .title = title,
                             .detail = detail,
                             .requiresAdmin = false,
                             .informational = false};
    };
    const auto input = Category::inputMethod;
    const auto data = Category::data;
    EXPECT_THAT(
        items(),
        ElementsAre(counted("tis", input, "Input source registration", "1 source"),
                    counted("tis", input, "Input source registration", "2 sources"),
                    counted("hitoolbox", input, "Keyboard settings entries", "1 entry"),
                    counted("hitoolbox", input, "Keyboard settings entries", "12345 entries"),
                    counted("data", data, "Settings and app data", "1 item"),
                    counted("data", data, "Settings and app data", "33 items"),
                    counted("keychain", data, "Sign-in data (Keychain)", "1 item"),
                    counted("keychain", data, "Sign-in data (Keychain)", "3 items")));
}

// In a root of its own (chroot), where the system's folders belong to the test.
TEST_F(Builder, NamesEachFindingByAnIdentifierOfItsOwn) {
    for (const char* there :
         {"Applications/kovra.app", "Applications/KovraAgent.app", "u/Applications/kovra.app",
          "u/Applications/KovraAgent.app", "tmp/kovra"}) {
        folder.folder(there);
    }
    const std::string volume = folder.folder("volume");
    EXPECT_TRUE(holdsInForkedProcess([&] {
        const PrivateMounts::Volume rights(volume); // those to change the root come with it
        home.set("/u");
        if (::chroot(folder.path().c_str()) != 0) {
            return false;
        }
        found.addApplication("kovra.app", "kovra.app");
        found.addApplication("KovraAgent.app", "KovraAgent.app (old version)");
        found.addInputMethods({"/Library/Input Methods/kovraInput.app"}, "",
                              Removal::byAdministrator);
        found.addInputMethods({"/u/Library/Input Methods/kovraInput.app"}, "", Removal::byUser);
        found.addInputSources(2);
        found.addKeyboardSettings(2);
        found.addData(2);
        found.addSystemTemporaryFolder();
        found.addKeychain(2);
        found.addPermissionsWhenAnythingElse();
        std::string identifiers;
        for (const InventoryItem& item : items()) {
            identifiers += item.id + (item.requiresAdmin ? " by an administrator\n" : "\n");
        }
        std::fputs(identifiers.c_str(), stderr);
        return identifiers == "Apps:/Applications/kovra.app by an administrator\n"
                              "Apps:/u/Applications/kovra.app\n"
                              "Apps:/Applications/KovraAgent.app by an administrator\n"
                              "Apps:/u/Applications/KovraAgent.app\n"
                              "ime:/Library/Input Methods/kovraInput.app by an administrator\n"
                              "ime:/u/Library/Input Methods/kovraInput.app\n"
                              "tis\n"
                              "hitoolbox\n"
                              "data\n"
                              "tmp:/tmp/kovra by an administrator\n"
                              "keychain\n"
                              "tcc\n";
    }));
}

TEST_F(Builder, AddsThePrivacyRecordsOnlyBesideSomethingElse) {
    found.addPermissionsWhenAnythingElse();
    EXPECT_THAT(items(), IsEmpty());
    found.addData(1);
    found.addPermissionsWhenAnythingElse();
    const auto both = items();
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both.back(), permissions());
}

} // namespace
} // namespace kovra
