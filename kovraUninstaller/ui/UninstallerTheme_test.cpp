#include "kovraUninstaller/ui/UninstallerTheme.hpp"
#include "platform/declarative/testing/PaintDescription.hpp"

#include <gtest/gtest.h>

namespace kovra {
namespace {

std::string described(const platform::declarative::Color& color) {
    return platform::declarative::testing::PaintDescription::colorOf(color);
}

TEST(UninstallerTheme, HasItsFourBaseColoursAtFullOpacity) {
    EXPECT_EQ(described(UninstallerTheme::ink), "#14161A/1");
    EXPECT_EQ(described(UninstallerTheme::brandGreen), "#B2E00B/1");
    EXPECT_EQ(described(UninstallerTheme::danger), "#FF3B30/1");
    EXPECT_EQ(described(UninstallerTheme::background), "#F7F7F7/1");
    EXPECT_EQ(UninstallerTheme::brandGreen.red, 178 / 255.0);
    EXPECT_EQ(UninstallerTheme::brandGreen.green, 224 / 255.0);
    EXPECT_EQ(UninstallerTheme::brandGreen.blue, 11 / 255.0);
}

TEST(UninstallerTheme, DerivesTheOthersFromInk) {
    EXPECT_EQ(described(UninstallerTheme::textPrimary), "#14161A/1");
    EXPECT_EQ(described(UninstallerTheme::textSecondary), "#14161A/0.72");
    EXPECT_EQ(described(UninstallerTheme::textMuted), "#14161A/0.5");
    EXPECT_EQ(described(UninstallerTheme::textOnBrand), "#14161A/1");
    EXPECT_EQ(described(UninstallerTheme::cardFill), "#14161A/0.015");
    EXPECT_EQ(described(UninstallerTheme::linkUnderlineResting), "#14161A/0.32");
    EXPECT_EQ(described(UninstallerTheme::weakUnderlineResting), "#14161A/0.28");
}

} // namespace
} // namespace kovra
