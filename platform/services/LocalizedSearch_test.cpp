#include "platform/services/LocalizedSearch.hpp"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(LocalizedSearch, LooksPastLetterCaseInBoth) {
    EXPECT_TRUE(localizedCaseInsensitiveContains("a KOVRAuninstaller b", "kovraUninstaller"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("ÄÖÜ", "öü"));
    EXPECT_TRUE(localizedCaseInsensitiveContains("kovra", "kovra"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra Uninstaller", "kovraUninstaller"));
}

TEST(LocalizedSearch, FindsNothingWhereThereIsNoText) {
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra\xFF", "kovra"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("kovra\xFF", "\xFF"));
    EXPECT_FALSE(localizedCaseInsensitiveContains("", "kovra"));
}

} // namespace
} // namespace platform
