#include "platform/declarative/PageState.hpp"
#include "platform/declarative/testing/GridMeasurer.hpp"

#include <gtest/gtest.h>

namespace platform::declarative {
namespace {

constexpr EaseInOut fade{.duration = 0.12};

Element pressable(const std::string& id) {
    return button({.id = id, .action = {}, .accessibilityTitle = id, .hoverFade = fade},
                  rectangle({}).frame({40, 20}));
}

// Buttons 40 × 20, one below the other from the top of a page 40 wide and 60 high.
PageLayout pageOf(const std::vector<std::string>& ids) {
    std::vector<Element> buttons;
    buttons.reserve(ids.size());
    for (const std::string& id : ids) {
        buttons.push_back(pressable(id));
    }
    return layOut(verticalStack({}, buttons).frame({40, 60}, {.vertical = VerticalAlignment::top}),
                  {40, 60}, testing::GridMeasurer{});
}

PageLayout pageWithNumber(double target) {
    return layOut(rectangle({}).animating(
                      {.id = "number", .target = target, .curve = EaseInOut{.duration = 1}}),
                  {40, 60}, testing::GridMeasurer{});
}

constexpr Point onFirst{20, 10};
constexpr Point onSecond{20, 30};
constexpr Point onNothing{20, 50};

TEST(PageState, FadesHoverInAndOutAsThePointerComesAndGoes) {
    PageState state;
    state.adopt(pageOf({"one", "two"}), 0);
    EXPECT_EQ(state.valuesAt(0).hover("one"), 0);
    state.pointerMoved(onFirst, 1);
    EXPECT_EQ(state.valuesAt(1).hover("one"), 0);
    EXPECT_NEAR(state.valuesAt(1.06).hover("one"), 0.5, 1e-6);
    EXPECT_TRUE(state.isMovingAt(1.06));
    EXPECT_EQ(state.valuesAt(1.12).hover("one"), 1);
    EXPECT_FALSE(state.isMovingAt(1.2));
    state.pointerMoved(onSecond, 2);
    EXPECT_NEAR(state.valuesAt(2.06).hover("one"), 0.5, 1e-6);
    EXPECT_NEAR(state.valuesAt(2.06).hover("two"), 0.5, 1e-6);
    state.pointerMoved(std::nullopt, 3);
    EXPECT_EQ(state.valuesAt(4).hover("two"), 0);
}

TEST(PageState, DoesNotRestartTheFadeWhileThePointerStaysOn) {
    PageState state;
    state.adopt(pageOf({"one"}), 0);
    state.pointerMoved(onFirst, 1);
    state.pointerMoved(Point{21, 11}, 1.06);
    EXPECT_EQ(state.valuesAt(1.12).hover("one"), 1);
}

TEST(PageState, LosesHoverWithItsElementAndBeginsAgainUnhovered) {
    PageState state;
    state.adopt(pageOf({"one"}), 0);
    state.pointerMoved(onFirst, 1);
    state.adopt(pageOf({}), 2);
    EXPECT_EQ(state.valuesAt(2).hover("one"), 0);
    state.adopt(pageOf({"one"}), 3);
    EXPECT_EQ(state.valuesAt(4).hover("one"), 0);
    state.pointerMoved(onFirst, 5);
    EXPECT_EQ(state.valuesAt(6).hover("one"), 1);
}

TEST(PageState, KeepsHoverWhileItsElementStays) {
    PageState state;
    state.adopt(pageOf({"one"}), 0);
    state.pointerMoved(onFirst, 1);
    state.adopt(pageOf({"one", "two"}), 1.06);
    EXPECT_NEAR(state.valuesAt(1.06).hover("one"), 0.5, 1e-6);
    EXPECT_EQ(state.valuesAt(2).hover("one"), 1);
}

TEST(PageState, ShowsANewNumberAtOnceAndMovesAKnownOne) {
    PageState state;
    EXPECT_EQ(state.valuesAt(0).animated("number", 0.4), 0.4);
    state.adopt(pageWithNumber(0.4), 0);
    EXPECT_FALSE(state.isMovingAt(0));
    EXPECT_EQ(state.valuesAt(1).animated("number", 0.6), 0.4);
    state.adopt(pageWithNumber(0.6), 1);
    EXPECT_TRUE(state.isMovingAt(1));
    EXPECT_NEAR(state.valuesAt(1.5).animated("number", 0.6), 0.5, 1e-6);
    state.adopt(pageWithNumber(0.6), 1.5); // the same target again: no new start
    EXPECT_EQ(state.valuesAt(2).animated("number", 0.6), 0.6);
    EXPECT_FALSE(state.isMovingAt(2));
}

TEST(PageState, ForgetsANumberWithItsElement) {
    PageState state;
    state.adopt(pageWithNumber(0.9), 0);
    state.adopt(pageOf({}), 1);
    EXPECT_EQ(state.valuesAt(1).animated("number", 0.0), 0.0);
}

TEST(PageState, PressesAButtonOnlyIfThePointerGoesDownAndUpOnIt) {
    PageState state;
    state.adopt(pageOf({"one", "two"}), 0);
    state.pointerPressed(onFirst);
    EXPECT_EQ(state.interaction().pressed, "one");
    EXPECT_EQ(state.pointerReleased(onFirst), "one");
    EXPECT_EQ(state.interaction().pressed, std::nullopt);

    state.pointerPressed(onFirst);
    state.pointerMoved(onNothing, 1);
    EXPECT_EQ(state.interaction().pressed, std::nullopt);
    state.pointerMoved(onFirst, 2);
    EXPECT_EQ(state.interaction().pressed, "one");
    state.pointerMoved(onSecond, 3);
    EXPECT_EQ(state.pointerReleased(onSecond), std::nullopt);
    EXPECT_EQ(state.pointerReleased(onFirst), std::nullopt);

    state.pointerPressed(onNothing);
    EXPECT_EQ(state.pointerReleased(onFirst), std::nullopt);
}

TEST(PageState, ReleasesAButtonThatDisappearsWhileItIsHeld) {
    PageState state;
    state.adopt(pageOf({"one"}), 0);
    state.pointerPressed(onFirst);
    state.adopt(pageOf({"other"}), 1);
    EXPECT_EQ(state.pointerReleased(onFirst), std::nullopt);
}

TEST(PageState, MovesTheFocusRoundInBothDirections) {
    using Direction = PageState::FocusDirection;
    PageState state;
    state.moveFocus(Direction::next);
    EXPECT_EQ(state.focused(), std::nullopt);
    state.adopt(pageOf({"one", "two"}), 0);
    EXPECT_EQ(state.focused(), std::nullopt);
    state.moveFocus(Direction::next);
    EXPECT_EQ(state.focused(), "one");
    state.moveFocus(Direction::next);
    EXPECT_EQ(state.interaction().focused, "two");
    state.moveFocus(Direction::next);
    EXPECT_EQ(state.focused(), "one");
    state.moveFocus(Direction::previous);
    EXPECT_EQ(state.focused(), "two");
    state.focus(std::nullopt);
    state.moveFocus(Direction::previous);
    EXPECT_EQ(state.focused(), "two");
}

TEST(PageState, LosesTheFocusWithItsButton) {
    PageState state;
    state.adopt(pageOf({"one"}), 0);
    state.moveFocus(PageState::FocusDirection::next);
    state.adopt(pageOf({"other"}), 1);
    EXPECT_EQ(state.focused(), std::nullopt);
}

TEST(PageState, JumpsWhenMotionIsReduced) {
    PageState state;
    state.setMotionPreference(MotionPreference::reduced);
    state.adopt(pageOf({"one"}), 0);
    state.pointerMoved(onFirst, 1);
    EXPECT_EQ(state.valuesAt(1).hover("one"), 1);
    state.adopt(pageWithNumber(0.4), 2);
    state.adopt(pageWithNumber(0.6), 3);
    EXPECT_EQ(state.valuesAt(3).animated("number", 0.6), 0.6);
    EXPECT_FALSE(state.isMovingAt(3));
}

} // namespace
} // namespace platform::declarative
