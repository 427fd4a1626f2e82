#include "platform/declarative/PageLayout.hpp"
#include "platform/declarative/testing/GridMeasurer.hpp"
#include "platform/declarative/testing/PaintQueries.hpp"

#include <gmock/gmock.h>

namespace platform::declarative {
namespace {

using testing::commandsOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Color red{1, 0, 0, 1};
constexpr Color blue{0, 0, 1, 1};

PageLayout laidOut(const Element& page, const Interaction& interaction = {}) {
    return layOut(page, {200, 100}, testing::GridMeasurer{}, interaction);
}

Element block(double width, double height, Color color = red) {
    return rectangle(color).frame({width, height});
}

Element pressable(const std::string& id, const Element& label) {
    return button({.id = id, .action = {}, .accessibilityTitle = "Title of " + id}, label);
}

TEST(PageLayout, PaintsInAbsolutePointsWithLaterSiblingsOnTop) {
    const PageLayout page = laidOut(layers({}, {block(100, 50), block(20, 80, blue)}));
    EXPECT_THAT(page.paint.commands,
                ElementsAre(PaintCommand{paint::FillRect{{50, 25, 100, 50}, red}},
                            PaintCommand{paint::FillRect{{90, 10, 20, 80}, blue}}));
    EXPECT_EQ(page.paint.size, (Size{200, 100}));
}

TEST(PageLayout, PaintsABackgroundBelow) {
    const PageLayout page = laidOut(block(20, 10).background(rectangle(blue)));
    EXPECT_THAT(page.paint.commands,
                ElementsAre(PaintCommand{paint::FillRect{{90, 45, 20, 10}, blue}},
                            PaintCommand{paint::FillRect{{90, 45, 20, 10}, red}}));
}

TEST(PageLayout, DrawsATextInTheWidthThatItWasWrappedAt) {
    const Text centred{.string = "one two three",
                       .font = {10, FontWeight::regular},
                       .color = red,
                       .alignment = HorizontalAlignment::center};
    const PageLayout page = laidOut(text(centred).frame({60, 40}));
    EXPECT_THAT(commandsOf<paint::DrawText>(page.paint),
                ElementsAre(paint::DrawText{centred, {82.5, 38, 35, 24}, {70, 38, 60, 24}, 47}));
}

TEST(PageLayout, ClipsBetweenPushAndPop) {
    const PageLayout page =
        laidOut(layers({}, {block(40, 40).clipped({.cornerRadius = 8}), block(2, 2, blue)}));
    const Path outline = Outline{.cornerRadius = 8}.pathIn({80, 30, 40, 40});
    EXPECT_THAT(page.paint.commands,
                ElementsAre(PaintCommand{paint::PushClip{outline}},
                            PaintCommand{paint::FillRect{{80, 30, 40, 40}, red}},
                            PaintCommand{paint::PopClip{}},
                            PaintCommand{paint::FillRect{{99, 49, 2, 2}, blue}}));
}

TEST(PageLayout, MultipliesThePressedOpacityIntoColoursAndImages) {
    const Element label = layers({}, {block(20, 10, red.withOpacity(0.5)), image("AppIcon")});
    const PageLayout page = laidOut(pressable("one", label), {.pressed = "one"});
    EXPECT_EQ(commandsOf<paint::FillRect>(page.paint).at(0).color.alpha, 0.5 * pressedOpacity);
    EXPECT_EQ(commandsOf<paint::DrawImage>(page.paint).at(0).opacity, pressedOpacity);
}

TEST(PageLayout, PaintsNothingForARectangleWithoutAnArea) {
    EXPECT_THAT(laidOut(block(0, 40)).paint.commands, IsEmpty());
}

TEST(PageLayout, HitsTheTopmostButton) {
    const PageLayout page = laidOut(
        layers({}, {pressable("below", block(100, 50)), pressable("above", block(20, 80))}));
    EXPECT_EQ(hitAt(page.hitAreas, {100, 50})->button.id, "above");
    EXPECT_EQ(hitAt(page.hitAreas, {60, 50})->button.id, "below");
    EXPECT_EQ(hitAt(page.hitAreas, {100, 12})->button.id, "above"); // where it overflows
    EXPECT_EQ(hitAt(page.hitAreas, {10, 10}), nullptr);
}

TEST(PageLayout, HitsUpToTheEdgeAndNotWhereTheLabelIsClippedAway) {
    const PageLayout page = laidOut(pressable("wide", block(100, 50)).frame({20, 50}).clipped({}));
    EXPECT_EQ(page.hitAreas.at(0).rect, (Rect{90, 25, 20, 50}));
    EXPECT_NE(hitAt(page.hitAreas, {90, 25}), nullptr);
    EXPECT_EQ(hitAt(page.hitAreas, {110, 25}), nullptr);
    EXPECT_EQ(hitAt(page.hitAreas, {89.9, 25}), nullptr);
}

TEST(PageLayout, OrdersTheFocusAsThePageIsPainted) {
    const PageLayout page = laidOut(verticalStack(
        {}, {pressable("one", block(5, 5)), block(5, 5), pressable("two", block(5, 5))}));
    EXPECT_THAT(page.focusOrder(), ElementsAre("one", "two"));
    EXPECT_EQ(page.buttonWithID("two")->button.id, "two");
    EXPECT_EQ(page.buttonWithID("three"), nullptr);
}

TEST(PageLayout, RunsTheActionOfAButtonThatIsFound) {
    int presses = 0;
    const Element page = button(
        {.id = "go", .action = [&presses] { ++presses; }, .accessibilityTitle = "Go"}, block(5, 5));
    const PageLayout shown = laidOut(page);
    hitAt(shown.hitAreas, {100, 50})->button.action();
    EXPECT_EQ(presses, 1);
}

TEST(PageLayout, DrawsTheHeldButtonFainterAndRingsTheFocusedOneOnTop) {
    const Element page =
        verticalStack({}, {pressable("one", block(40, 20)), pressable("two", block(40, 20, blue))});
    const PageLayout held = laidOut(page, {.pressed = "one", .focused = "one"});
    const auto fills = commandsOf<paint::FillRect>(held.paint);
    EXPECT_EQ(fills.at(0).color.alpha, pressedOpacity);
    EXPECT_EQ(fills.at(1).color.alpha, 1);
    ASSERT_EQ(held.paint.commands.size(), 3U);
    const auto& ring = std::get<paint::StrokePath>(held.paint.commands.back());
    const Rect around = ring.path.bounds();
    EXPECT_LT(around.x, 80);
    EXPECT_GT(around.maxX(), 120);
    EXPECT_LT(around.y, 30);
    EXPECT_GT(around.maxY(), 50);
    EXPECT_THAT(commandsOf<paint::StrokePath>(laidOut(page).paint), IsEmpty());
}

TEST(PageLayout, ListsTextsButtonsImagesAndDescribedElementsForAccessibility) {
    const Text words{.string = "words", .font = {10}, .color = red};
    const PageLayout page = laidOut(verticalStack(
        {}, {text(words), pressable("go", text(words)), image("AppIcon").frame({4, 4}),
             image("AppIcon", "picture").frame({4, 4}),
             layers({}, {text(words)})
                 .accessibility({AccessibilityRole::progressIndicator, "bar", 0.25})}));
    ASSERT_EQ(page.accessibility.size(), 4U);
    using Description = AccessibilityDescription;
    EXPECT_EQ(page.accessibility[0].description,
              (Description{AccessibilityRole::staticText, "words"}));
    EXPECT_EQ(page.accessibility[1].description,
              (Description{AccessibilityRole::button, "Title of go"}));
    EXPECT_EQ(page.accessibility[1].buttonID, "go");
    EXPECT_EQ(page.accessibility[1].frame, page.hitAreas.at(0).rect);
    EXPECT_EQ(page.accessibility[2].description,
              (Description{AccessibilityRole::image, "picture"}));
    EXPECT_EQ(page.accessibility[3].description,
              (Description{AccessibilityRole::progressIndicator, "bar", 0.25}));
}

} // namespace
} // namespace platform::declarative
