#include "kovraUninstaller/ui/Controls.hpp"
#include "kovraUninstaller/ui/testing/ViewFixture.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using namespace platform::declarative;
using platform::declarative::testing::drawingOf;
using platform::declarative::testing::indexOf;
using ::testing::ElementsAre;

const Phase failed = phase::Failed{"Remove kovra apps", "Administrator access was not granted."};

// -1 for a text without underline.
double underlineAlpha(const Text& text) {
    return text.underline ? text.underline->alpha : -1;
}

constexpr Point onButton{240, 323};
constexpr Point onLink{240, 371};

class UninstallerViewBehaviour : public ::testing::Test, protected testing::ViewFixture {
  protected:
    // Clicks at that point of the page.
    std::vector<std::string> callsAfterPressing(const Phase& phase, Point point) {
        calls.clear();
        const PageLayout shown = page(phase);
        PageState state;
        state.adopt(shown, 0);
        state.pointerPressed(point);
        if (const auto id = state.pointerReleased(point)) {
            shown.buttonWithID(*id)->button.action();
        }
        return calls;
    }

    [[nodiscard]] PageLayout pageAt(double now, const Phase& phase,
                                    double progressFraction = 0) const {
        return page(phase, progressFraction, state.valuesAt(now));
    }

    PageState state;
};

TEST_F(UninstallerViewBehaviour, RunsTheActionOfEachButtonAndLink) {
    EXPECT_THAT(callsAfterPressing(phase::Ready{}, onButton), ElementsAre("startUninstall"));
    EXPECT_THAT(callsAfterPressing(phase::NothingFound{}, onButton), ElementsAre("quit"));
    EXPECT_THAT(callsAfterPressing(phase::NothingFound{}, onLink), ElementsAre("startUninstall"));
    EXPECT_THAT(callsAfterPressing(phase::Done{}, onButton), ElementsAre("quit"));
    EXPECT_THAT(callsAfterPressing(phase::Done{}, onLink), ElementsAre("openDownloadPage"));
    EXPECT_THAT(callsAfterPressing(phase::Done{{"left"}}, onButton), ElementsAre("quit"));
    EXPECT_THAT(callsAfterPressing(phase::Done{{"left"}}, onLink), ElementsAre("showLogInFinder"));
    EXPECT_THAT(callsAfterPressing(failed, onButton), ElementsAre("startUninstall"));
    EXPECT_THAT(callsAfterPressing(failed, onLink), ElementsAre("showLogInFinder"));
}

TEST_F(UninstallerViewBehaviour, HasNothingToPressWhileItScansOrUninstalls) {
    for (const Phase& phase : {Phase{phase::Scanning{}}, Phase{phase::Uninstalling{}}}) {
        EXPECT_THAT(callsAfterPressing(phase, onButton), ElementsAre());
        EXPECT_THAT(callsAfterPressing(phase, onLink), ElementsAre());
    }
    EXPECT_THAT(callsAfterPressing(phase::Ready{}, onLink), ElementsAre());
}

TEST_F(UninstallerViewBehaviour, CanBePressedAllOverALabelAndNotBesideIt) {
    const PageLayout shown = page(phase::Done{});
    EXPECT_EQ(shown.buttonWithID("Quit")->rect, (Rect{130, 302, 220, 42}));
    const Rect link = shown.buttonWithID("Download kovra again")->rect;
    EXPECT_NEAR(link.x, 181, 1e-9);
    EXPECT_NEAR(link.width, 104 + 3 + 11, 1e-9); // with the gap and the arrow
    EXPECT_NEAR(link.height, 15.6, 1e-9);
}

TEST_F(UninstallerViewBehaviour, WalksTheFocusFromTheButtonToTheLink) {
    EXPECT_THAT(page(failed).focusOrder(), ElementsAre("Retry", "Show Log"));
    EXPECT_THAT(page(phase::Ready{}).focusOrder(), ElementsAre("Uninstall"));
    EXPECT_THAT(page(phase::Uninstalling{}).focusOrder(), ElementsAre());
}

TEST_F(UninstallerViewBehaviour, DarkensTheQuietLinkUnderThePointerIn120Milliseconds) {
    const auto showLogAt = [&](double now) {
        return drawingOf(pageAt(now, failed).paint, "Show Log").text;
    };
    state.adopt(page(failed), 0);
    state.pointerMoved(onLink, 1);
    EXPECT_EQ(showLogAt(1).color.alpha, 0.5);
    EXPECT_EQ(underlineAlpha(showLogAt(1)), 0.28);
    EXPECT_NEAR(showLogAt(1.06).color.alpha, 0.75, 1e-6);
    EXPECT_NEAR(underlineAlpha(showLogAt(1.06)), 0.64, 1e-6);
    EXPECT_EQ(showLogAt(1.12).color.alpha, 1);
    EXPECT_EQ(underlineAlpha(showLogAt(1.12)), 1);
    state.pointerMoved(std::nullopt, 2);
    EXPECT_NEAR(showLogAt(2.06).color.alpha, 0.75, 1e-6);
    EXPECT_EQ(showLogAt(2.12).color.alpha, 0.5);
    EXPECT_EQ(underlineAlpha(showLogAt(2.12)), 0.28);
}

TEST_F(UninstallerViewBehaviour, DarkensOnlyTheUnderlineOfTheExternalLink) {
    const auto linkAt = [&](double now) {
        return drawingOf(pageAt(now, phase::Done{}).paint, "Download kovra again").text;
    };
    state.adopt(page(phase::Done{}), 0);
    state.pointerMoved(onLink, 1);
    EXPECT_EQ(underlineAlpha(linkAt(1)), 0.32);
    EXPECT_NEAR(underlineAlpha(linkAt(1.06)), 0.66, 1e-6);
    EXPECT_EQ(underlineAlpha(linkAt(1.12)), 1);
    for (const double now : {1.0, 1.06, 1.12}) {
        EXPECT_EQ(linkAt(now).color.alpha, 1);
    }
}

TEST_F(UninstallerViewBehaviour, HasNoHoverOnThePrimaryButton) {
    state.adopt(page(failed), 0);
    state.pointerMoved(onButton, 1);
    EXPECT_FALSE(state.isMovingAt(1));
    EXPECT_EQ(pageAt(2, failed).paint, page(failed).paint);
}

TEST_F(UninstallerViewBehaviour, ForgetsHoverWhenTheLinkDisappears) {
    state.adopt(page(failed), 0);
    state.pointerMoved(onLink, 1);
    state.adopt(page(phase::Uninstalling{}), 2);
    state.adopt(page(failed), 3);
    EXPECT_EQ(pageAt(4, failed).paint, page(failed).paint);
}

TEST_F(UninstallerViewBehaviour, MovesTheBarOnItsSpringWithoutOvershoot) {
    const Phase uninstalling = phase::Uninstalling{};
    const auto filledAt = [&](double now) {
        const auto fills = platform::declarative::testing::commandsOf<paint::FillRect>(
            pageAt(now, uninstalling, 0.6).paint);
        return fills.at(2).rect.width; // after the page's background and the track
    };
    state.adopt(page(uninstalling, 0.4), 0);
    state.adopt(pageAt(1, uninstalling, 0.6), 1);
    EXPECT_TRUE(state.isMovingAt(1));
    EXPECT_NEAR(filledAt(1), 88, 1e-9);
    EXPECT_NEAR(filledAt(1.1), 88 + 44 * 0.357740, 1e-4);
    EXPECT_NEAR(filledAt(1.5), 88 + 44 * 0.986399, 1e-4);
    for (int i = 0; i < 200; ++i) {
        EXPECT_LE(filledAt(1 + i * 0.01), 132 + 1e-9);
    }
    EXPECT_EQ(filledAt(3), 132);
    EXPECT_FALSE(state.isMovingAt(3));
}

TEST_F(UninstallerViewBehaviour, StartsTheBarOfANewRunAtItsStart) {
    state.adopt(page(phase::Uninstalling{}, 2.0 / 7.0), 0);
    state.adopt(pageAt(1, failed, 2.0 / 7.0), 1);
    EXPECT_EQ(pageAt(2, phase::Uninstalling{}, 0).paint, page(phase::Uninstalling{}, 0).paint);
}

TEST_F(UninstallerViewBehaviour, LetsALongReasonRunOnBelowTheButtonThatStaysInPlaceAndOnTop) {
    std::string reason;
    for (int i = 0; i < 120; ++i) {
        reason += "reason ";
    }
    const Phase longFailure = phase::Failed{"Remove kovra apps", reason};
    const PageLayout shown = page(longFailure);
    const paint::DrawText subtitle = drawingOf(shown.paint, "Remove kovra apps: " + reason);
    EXPECT_EQ(subtitle.rect.y, 208);
    EXPECT_LE(subtitle.rect.width, 360);
    EXPECT_GT(subtitle.rect.maxY(), 344); // beyond the button's lower edge
    EXPECT_EQ(shown.buttonWithID("Retry")->rect, page(failed).buttonWithID("Retry")->rect);
    EXPECT_EQ(shown.buttonWithID("Show Log")->rect, page(failed).buttonWithID("Show Log")->rect);
    const std::size_t button =
        indexOf(shown.paint,
                paint::FillRect{{130, 302, 220, 42}, {178 / 255.0, 224 / 255.0, 11 / 255.0, 1}});
    ASSERT_LT(button, shown.paint.commands.size());
    EXPECT_LT(indexOf(shown.paint, subtitle), button);
    EXPECT_THAT(callsAfterPressing(longFailure, onButton), ElementsAre("startUninstall"));
}

TEST_F(UninstallerViewBehaviour, KeepsTheButtonsSizeWhateverItsTitle) {
    for (const char* title : {"", "Go", "A title that is far too long for its button"}) {
        const PageLayout shown =
            layOut(PrimaryButton{title, [] {}}.body(), UninstallerView::size, measurer);
        EXPECT_EQ(shown.hitAreas.at(0).rect, (Rect{130, 204, 220, 42}));
    }
}

TEST_F(UninstallerViewBehaviour, ReadsOutTextsThenTheActionThenTheLink) {
    using Description = AccessibilityDescription;
    const auto spokenIn = [&](const Phase& phase, double progressFraction = 0) {
        std::vector<Description> spoken;
        for (const AccessibilityNode& node : page(phase, progressFraction).accessibility) {
            spoken.push_back(node.description);
        }
        return spoken;
    };
    EXPECT_THAT(
        spokenIn(failed),
        ElementsAre(Description{AccessibilityRole::image, "Warning"},
                    Description{AccessibilityRole::staticText, "Couldn't finish uninstalling"},
                    Description{AccessibilityRole::staticText,
                                "Remove kovra apps: Administrator access was not granted."},
                    Description{AccessibilityRole::button, "Retry"},
                    Description{AccessibilityRole::button, "Show Log"}));
    EXPECT_EQ(spokenIn(phase::Uninstalling{}, 2.0 / 7.0).back(),
              (Description{AccessibilityRole::progressIndicator, "Uninstalling…", 2.0 / 7.0}));
    EXPECT_EQ(spokenIn(phase::Scanning{}).back(),
              (Description{AccessibilityRole::staticText, "Checking…"}));
}

} // namespace
} // namespace kovra
