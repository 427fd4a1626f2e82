#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/TextCase.hpp"

#include <gtest/gtest.h>

namespace platform {
namespace {

using namespace std::string_literals;

TEST(Lowercased, ChangesPlainLettersAndNothingElse) {
    EXPECT_EQ(lowercased("KOVRA Input @[`{ 019"), "kovra input @[`{ 019");
    EXPECT_EQ(lowercased(""), "");
}

TEST(Lowercased, FollowsUnicodeBeyondAscii) {
    EXPECT_EQ(lowercased("\u212AOVRA"), "kovra");
    EXPECT_EQ(lowercased("ÄÖÜ ΑΒΓ КОВРА \uFF2B"), "äöü αβγ ковра \uFF4B");
    EXPECT_EQ(lowercased("日本語 KOVRA 🎉"), "日本語 kovra 🎉");
    EXPECT_TRUE(lowercased("KOVRA \u0130").starts_with("kovra i"));
}

TEST(Lowercased, KeepsNulCharactersAndWhatFollowsThem) {
    EXPECT_EQ(lowercased("A\0KOVRA"s), "a\0kovra"s);
    EXPECT_EQ(lowercased("Ä\0KOVRA"s), "ä\0kovra"s);
}

TEST(Lowercased, ReturnsIllFormedUtf8Unchanged) {
    EXPECT_EQ(lowercased("KOVRA\xFF"), "KOVRA\xFF");
}

TEST(Lowercased, TakesALineOfTenMegabytes) {
    std::string line = "Ä";
    line.append(10'000'000, 'K');
    EXPECT_TRUE(lowercased(line) == "ä" + std::string(10'000'000, 'k'));
}

TEST(LocalizedSearch, IgnoresCaseInBoth) {
    EXPECT_TRUE(localizedCaseInsensitiveContains("a KOVRAuninstaller b", "kovraUninstaller"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("ÄÖÜ", "öü"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("kovra", "kovra"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra Uninstaller", "kovraUninstaller"));
}

TEST(LocalizedSearch, FindsNothingInIllFormedUtf8OrEmptyText) {
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra\xFF", "kovra"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra\xFF", "\xFF"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("", "kovra"));
}

} // namespace
} // namespace platform
