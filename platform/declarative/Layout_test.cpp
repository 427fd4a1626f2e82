#include "platform/declarative/Layout.hpp"
#include "platform/declarative/testing/GridMeasurer.hpp"

#include <gmock/gmock.h>

namespace platform::declarative {
namespace {

const testing::GridMeasurer measurer;

LayoutBox arranged(const Element& element, Proposal offered = {200, 100}) {
    return arrange(element, offered, measurer);
}

// At 10 points regular each character is 5 wide, a line 12 high and its baseline 9 down.
Element words(const std::string& string, double size = 10) {
    return text({.string = string, .font = {size, FontWeight::regular}, .color = {}});
}

Element block(double width, double height) {
    return rectangle({}).frame({width, height});
}

std::vector<Rect> framesOfChildren(const LayoutBox& box) {
    std::vector<Rect> frames;
    frames.reserve(box.children.size());
    for (const LayoutBox& child : box.children) {
        frames.push_back({child.origin.x, child.origin.y, child.size.width, child.size.height});
    }
    return frames;
}

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Layout, GivesATextItsOwnSizeAndAShapeTheOfferedOne) {
    EXPECT_EQ(arranged(words("abcd")).size, (Size{20, 12}));
    EXPECT_EQ(arranged(rectangle({})).size, (Size{200, 100}));
    EXPECT_EQ(arranged(image("AppIcon")).size, (Size{200, 100}));
    EXPECT_EQ(arranged(Element{}).size, (Size{0, 0}));
}

TEST(Layout, WrapsATextAtTheOfferedWidthAndLetsItGrow) {
    const LayoutBox box = arranged(words("one two three four"), {50, 12});
    EXPECT_EQ(box.size, (Size{50, 24})); // "three four" fills the second line exactly
    EXPECT_EQ(box.wrapWidth, 50);
    EXPECT_EQ(arranged(words("one two three four"), {}).size, (Size{90, 12}));
}

TEST(Layout, FramesWithAlignment) {
    const auto originIn = [](Alignment alignment) {
        return arranged(block(20, 10).frame({100, 50}, alignment)).children.front().origin;
    };
    EXPECT_EQ(originIn({}), (Point{40, 20}));
    EXPECT_EQ(originIn({HorizontalAlignment::leading, VerticalAlignment::top}), (Point{0, 0}));
}

TEST(Layout, LetsAChildOverflowItsFrameWithoutChangingTheFrame) {
    const LayoutBox box =
        arranged(block(20, 80).frame({100, 50}, {.vertical = VerticalAlignment::top}));
    EXPECT_EQ(box.size, (Size{100, 50}));
    EXPECT_THAT(framesOfChildren(box), ElementsAre(Rect{40, 0, 20, 80}));
}

TEST(Layout, FramesOneAxisAndLeavesTheOtherToTheChild) {
    EXPECT_EQ(arranged(words("abcd").frame({.height = 30})).size, (Size{20, 30}));
    EXPECT_EQ(arranged(words("abcd").frame({.width = 30})).size, (Size{30, 12}));
}

TEST(Layout, OffersWhatPaddingLeaves) {
    const LayoutBox box =
        arranged(rectangle({}).padding({.top = 1, .left = 2, .bottom = 3, .right = 4}));
    EXPECT_EQ(box.size, (Size{200, 100}));
    EXPECT_THAT(framesOfChildren(box), ElementsAre(Rect{2, 1, 194, 96}));
}

TEST(Layout, StacksVerticallyWithSpacingAndAlignment) {
    const std::vector<Element> children{block(40, 10), block(20, 30)};
    EXPECT_THAT(framesOfChildren(arranged(verticalStack({.spacing = 6}, children))),
                ElementsAre(Rect{0, 0, 40, 10}, Rect{10, 16, 20, 30}));
    const LayoutBox leading =
        arranged(verticalStack({.alignment = HorizontalAlignment::leading}, children));
    EXPECT_THAT(framesOfChildren(leading), ElementsAre(Rect{0, 0, 40, 10}, Rect{0, 10, 20, 30}));
    EXPECT_EQ(leading.size, (Size{40, 40}));
}

TEST(Layout, GivesASpacerWhatTheOthersLeaveAndNoLessThanItsMinimum) {
    const Element stack = verticalStack({}, {block(40, 30), spacer(5), block(40, 20)});
    EXPECT_THAT(framesOfChildren(arranged(stack)),
                ElementsAre(Rect{0, 0, 40, 30}, Rect{20, 30, 0, 50}, Rect{0, 80, 40, 20}));
    EXPECT_EQ(arranged(stack, {200, 40}).size, (Size{40, 55}));
    EXPECT_EQ(arranged(stack, {}).size, (Size{40, 55}));
}

TEST(Layout, SharesTheRestAmongFlexibleChildren) {
    const Element stack = horizontalStack(
        {.spacing = 10}, {rectangle({}), block(40, 20), rectangle({}).padding({.left = 10})});
    EXPECT_THAT(framesOfChildren(arranged(stack)),
                ElementsAre(Rect{0, 0, 70, 100}, Rect{80, 40, 40, 20}, Rect{130, 0, 70, 100}));
}

TEST(Layout, OffersATextInARowWhatIsLeftOfTheRow) {
    const Element row = horizontalStack({}, {block(150, 10), words("one two three")});
    EXPECT_THAT(framesOfChildren(arranged(row)), // 50 are left
                ElementsAre(Rect{0, 7, 150, 10}, Rect{150, 0, 35, 24}));
}

TEST(Layout, AlignsARowOnTheFirstTextBaseline) {
    const Element row =
        horizontalStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 3},
                        {words("ab", 10), words("ab", 20), block(10, 4)});
    const LayoutBox box = arranged(row);
    EXPECT_THAT(framesOfChildren(box), // the baseline of content without text is its bottom
                ElementsAre(Rect{0, 9, 10, 12}, Rect{13, 0, 20, 24}, Rect{36, 14, 10, 4}));
    EXPECT_EQ(box.firstBaseline, 18);
    EXPECT_EQ(box.size, (Size{46, 24}));
}

TEST(Layout, KeepsABaselineThroughPaddingAndFrames) {
    EXPECT_EQ(arranged(words("ab").padding({.top = 5})).firstBaseline, 14);
    EXPECT_EQ(arranged(words("ab").frame({.height = 32})).firstBaseline, 19);
    EXPECT_EQ(arranged(words("ab").background(rectangle({}))).firstBaseline, 9);
}

TEST(Layout, LayersAreAsLargeAsTheLargestAndAligned) {
    const LayoutBox box = arranged(
        layers({.horizontal = HorizontalAlignment::leading}, {block(40, 10), block(20, 30)}));
    EXPECT_EQ(box.size, (Size{40, 30}));
    EXPECT_THAT(framesOfChildren(box), ElementsAre(Rect{0, 10, 40, 10}, Rect{0, 0, 20, 30}));
}

TEST(Layout, FitsABackgroundToItsElementAndCentresIt) {
    const LayoutBox behind = arranged(block(40, 10).background(rectangle({})));
    EXPECT_EQ(behind.size, (Size{40, 10}));
    EXPECT_THAT(framesOfChildren(behind), ElementsAre(Rect{0, 0, 40, 10}, Rect{0, 0, 40, 10}));
    const LayoutBox small = arranged(block(40, 10).background(block(4, 4)));
    EXPECT_THAT(framesOfChildren(small), ElementsAre(Rect{18, 3, 4, 4}, Rect{0, 0, 40, 10}));
}

TEST(BoxArithmetic, AlignsAtTheStartInTheMiddleAndAtTheEnd) {
    EXPECT_EQ(alignedOffset(100, 40, 0), 0);
    EXPECT_EQ(alignedOffset(100, 40, 0.5), 30);
    EXPECT_EQ(alignedOffset(100, 40, 1), 60);
}

TEST(BoxArithmetic, LetsLongContentOverflowByItsAlignment) {
    EXPECT_EQ(alignedOffset(100, 140, 0), 0);
    EXPECT_EQ(alignedOffset(100, 140, 0.5), -20);
    EXPECT_EQ(alignedOffset(100, 140, 1), -40);
}

TEST(BoxArithmetic, NeverOffersANegativeLength) {
    EXPECT_EQ(lengthWithin(100, 30, 20), 50);
    EXPECT_EQ(lengthWithin(40, 30, 20), 0);
    EXPECT_EQ(lengthWithin(std::nullopt, 30, 20), std::nullopt);
    EXPECT_EQ(lengthLeft(100, 130), 0);
}

TEST(BoxArithmetic, SharesTheRestEvenly) {
    EXPECT_EQ(flexibleShare(100, 40, 3), 20);
    EXPECT_EQ(flexibleShare(100, 140, 3), 0);
    EXPECT_EQ(flexibleShare(100, 40, 0), std::nullopt);
    EXPECT_EQ(flexibleShare(std::nullopt, 40, 2), std::nullopt);
}

TEST(BoxArithmetic, PutsSpacingBetweenChildrenOnly) {
    const std::vector<double> lengths{10, 20, 30};
    const StackOffsets offsets = stackOffsets(lengths, 5);
    EXPECT_THAT(offsets.starts, ElementsAre(0, 15, 40));
    EXPECT_EQ(offsets.length, 70);
    EXPECT_THAT(stackOffsets({}, 5).starts, IsEmpty());
    EXPECT_EQ(stackOffsets({}, 5).length, 0);
}

TEST(BoxArithmetic, MovesEachChildDownToTheSharedBaseline) {
    const std::vector<double> heights{20, 8, 30};
    const std::vector<double> baselines{15, 8, 12};
    const BaselineOffsets offsets = baselineOffsets(heights, baselines);
    EXPECT_THAT(offsets.tops, ElementsAre(0, 7, 3));
    EXPECT_EQ(offsets.baseline, 15);
    EXPECT_EQ(offsets.height, 33);
}

} // namespace
} // namespace platform::declarative
