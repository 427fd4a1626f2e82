#include "platform/declarative/BoxArithmetic.hpp"

#include <gmock/gmock.h>

namespace platform::declarative {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(BoxArithmetic, AlignsAtTheStartInTheMiddleAndAtTheEnd) {
    EXPECT_EQ(alignedOffset(100, 40, 0), 0);
    EXPECT_EQ(alignedOffset(100, 40, 0.5), 30);
    EXPECT_EQ(alignedOffset(100, 40, 1), 60);
}

TEST(BoxArithmetic, LetsWhatIsTooLongStickOutWhereItsAlignmentSays) {
    EXPECT_EQ(alignedOffset(100, 140, 0), 0);
    EXPECT_EQ(alignedOffset(100, 140, 0.5), -20);
    EXPECT_EQ(alignedOffset(100, 140, 1), -40);
}

TEST(BoxArithmetic, NeverOffersLessThanNothing) {
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
