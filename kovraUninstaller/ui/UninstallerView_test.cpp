#include "kovraUninstaller/ui/UninstallerView.hpp"
#include "kovraUninstaller/ui/testing/ViewFixture.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using namespace platform::declarative;
using ::testing::ElementsAreArray;
using Lines = std::vector<std::string>;

class UninstallerViewTest : public ::testing::Test, protected testing::ViewFixture {};

const Lines applicationIcon{"rect 0,0 480x450 #F7F7F7/1", "clip 184,44 112x112",
                            "image 'AppIcon' 184,44 112x112 /1", "unclip"};
const Lines checkMark{
    "rect 0,0 480x450 #F7F7F7/1",
    "symbol 'checkmark.circle.fill' 48 regular #B2E00B/1 at 216,76 48x48 baseline 119.2"};
const Lines offer{
    "text 'Uninstall kovra' 25 semibold #14161A/1 center at 135,172 210x30 in 40,172 400x30 "
    "baseline 194.5",
    "text 'This removes kovra from this Mac, including your sign-in and settings.' 13 light "
    "#14161A/0.72 center at 84,208 312x31.2 in 60,208 360x31.2 baseline 219.7"};

// The filled button with its title, each of whose characters is 8 points wide.
Lines filledButton(const std::string& title, const std::string& textRect) {
    return {"clip 130,302 220x42", "rect 130,302 220x42 #B2E00B/1",
            "text '" + title + "' 16 regular #14161A/1 center at " + textRect +
                " in 130,313.4 220x19.2 baseline 327.8",
            "unclip"};
}

Lines joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

TEST_F(UninstallerViewTest, ChecksWithAPlaceholderWhileItScans) {
    const Lines placeholder{
        "clip 130,302 220x42", "rect 130,302 220x42 #14161A/0.015",
        "text 'Checking…' 16 regular #14161A/0.5 center at 204,313.4 72x19.2 in 130,313.4 "
        "220x19.2 baseline 327.8",
        "unclip"};
    EXPECT_THAT(painted(phase::Scanning{}),
                ElementsAreArray(joined({applicationIcon, offer, placeholder})));
    EXPECT_TRUE(page(phase::Scanning{}).hitAreas.empty());
}

TEST_F(UninstallerViewTest, OffersToUninstallWhenReady) {
    EXPECT_THAT(painted(phase::Ready{}),
                ElementsAreArray(joined(
                    {applicationIcon, offer, filledButton("Uninstall", "204,313.4 72x19.2")})));
}

TEST_F(UninstallerViewTest, SaysThatNothingWasFoundAndOffersToCleanUpAnyway) {
    const Lines texts{
        "text 'kovra was not found' 25 semibold #14161A/1 center at 107,172 266x30 in 40,172 "
        "400x30 baseline 194.5",
        "text 'There is nothing to remove on this Mac.' 13 light #14161A/0.72 center at "
        "138.6,208 202.8x15.6 in 60,208 360x15.6 baseline 219.7"};
    const Lines link{"text 'Clean up anyway' 13 light #14161A/0.5 leading at 201,363.2 78x15.6 in "
                     "201,363.2 400x15.6 baseline 374.9 underlined #14161A/0.28"};
    EXPECT_THAT(painted(phase::NothingFound{}),
                ElementsAreArray(
                    joined({checkMark, texts, filledButton("Quit", "224,313.4 32x19.2"), link})));
}

class UninstallingViewTest : public UninstallerViewTest {
  protected:
    static Lines expectedWith(const Lines& fill) {
        return joined(
            {applicationIcon,
             {"text 'Uninstall kovra' 25 semibold #14161A/1 center at 135,172 210x30 in 40,172 "
              "400x30 baseline 194.5",
              "text 'Your Mac may ask for your password to remove kovra from the system Input "
              "Methods folder.' 13 light #14161A/0.72 center at 68.4,208 343.2x31.2 in 60,208 "
              "360x31.2 baseline 219.7",
              "clip 130,302 220x42", "rect 130,302 220x42 #B2E00B/0.3"},
             fill,
             {"text 'Uninstalling…' 16 regular #14161A/1 center at 188,313.4 104x19.2 in "
              "130,313.4 220x19.2 baseline 327.8",
              "unclip"}});
    }
};

TEST_F(UninstallingViewTest, ShowsOnlyThePaleTrackAtTheStart) {
    EXPECT_THAT(painted(phase::Uninstalling{}, 0), ElementsAreArray(expectedWith({})));
}

TEST_F(UninstallingViewTest, FillsTwoSeventhsAfterTwoSteps) {
    EXPECT_THAT(painted(phase::Uninstalling{}, 2.0 / 7.0),
                ElementsAreArray(expectedWith({"rect 130,302 62.857x42 #B2E00B/1"})));
}

TEST_F(UninstallingViewTest, FillsSixSeventhsAfterSixSteps) {
    EXPECT_THAT(painted(phase::Uninstalling{}, 6.0 / 7.0),
                ElementsAreArray(expectedWith({"rect 130,302 188.571x42 #B2E00B/1"})));
}

TEST_F(UninstallingViewTest, FillsTheBarAtTheEnd) {
    EXPECT_THAT(painted(phase::Uninstalling{}, 1),
                ElementsAreArray(expectedWith({"rect 130,302 220x42 #B2E00B/1"})));
}

TEST_F(UninstallerViewTest, TakesLeaveWithALinkToComeBack) {
    const Lines texts{
        "text 'Goodbye.' 25 semibold #14161A/1 center at 184,172 112x30 in 40,172 400x30 baseline "
        "194.5",
        "text 'kovra was removed. Thanks for giving it a try.' 13 light #14161A/0.72 center at "
        "120.4,208 239.2x15.6 in 60,208 360x15.6 baseline 219.7"};
    // 20 characters, 3 points, then an arrow of 11 points on the same baseline.
    const Lines link{"text 'Download kovra again' 13 light #14161A/1 leading at 181,363.2 "
                     "104x15.6 in 181,363.2 397x15.6 baseline 374.9 underlined #14161A/0.32",
                     "symbol 'arrow.up.right' 11 regular #14161A/1 at 288,365 11x11 "
                     "baseline 374.9"};
    EXPECT_THAT(painted(phase::Done{}),
                ElementsAreArray(
                    joined({checkMark, texts, filledButton("Quit", "224,313.4 32x19.2"), link})));
}

TEST_F(UninstallerViewTest, PointsToTheLogWhenSomethingIsLeft) {
    const Lines texts{
        "text 'kovra was removed' 25 semibold #14161A/1 center at 121,172 238x30 in 40,172 "
        "400x30 baseline 194.5",
        "text 'Some items could not be removed. Restarting your Mac usually clears them.' 13 light "
        "#14161A/0.72 center at 65.8,208 348.4x31.2 in 60,208 360x31.2 baseline 219.7"};
    const Lines link{"text 'Show Log' 13 light #14161A/0.5 leading at 219.2,363.2 41.6x15.6 in "
                     "219.2,363.2 400x15.6 baseline 374.9 underlined #14161A/0.28"};
    EXPECT_THAT(painted(phase::Done{{"residue"}}),
                ElementsAreArray(
                    joined({checkMark, texts, filledButton("Quit", "224,313.4 32x19.2"), link})));
}

TEST_F(UninstallerViewTest, ShowsAFailureWithItsReason) {
    const Lines expected{
        "rect 0,0 480x450 #F7F7F7/1",
        "symbol 'exclamationmark.triangle.fill' 48 regular #FF3B30/1 at 216,76 48x48 "
        "baseline 119.2",
        "text 'Couldn't finish uninstalling' 25 semibold #14161A/1 center at 44,172 392x30 in "
        "40,172 400x30 baseline 194.5",
        "text 'Remove kovra apps: Administrator access was not granted.' 13 light #14161A/0.72 "
        "center at 94.4,208 291.2x15.6 in 60,208 360x15.6 baseline 219.7"};
    const Lines link{"text 'Show Log' 13 light #14161A/0.5 leading at 219.2,363.2 41.6x15.6 in "
                     "219.2,363.2 400x15.6 baseline 374.9 underlined #14161A/0.28"};
    EXPECT_THAT(
        painted(phase::Failed{"Remove kovra apps", "Administrator access was not granted."}),
        ElementsAreArray(joined({expected, filledButton("Retry", "220,313.4 40x19.2"), link})));
}

TEST_F(UninstallerViewTest, RoundsIconButtonPlaceholderAndBarWithContinuousCorners) {
    const Path icon = Outline{24}.pathIn({184, 44, 112, 112});
    const Path action = Outline{12}.pathIn({130, 302, 220, 42});
    for (const Phase& phase :
         {Phase{phase::Scanning{}}, Phase{phase::Ready{}}, Phase{phase::Uninstalling{}}}) {
        const auto clips =
            platform::declarative::testing::commandsOf<paint::PushClip>(page(phase).paint);
        ASSERT_EQ(clips.size(), 2U);
        EXPECT_EQ(clips[0].path, icon);
        EXPECT_EQ(clips[1].path, action);
    }
}

} // namespace
} // namespace kovra
