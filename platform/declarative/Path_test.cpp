#include "platform/declarative/Path.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace platform::declarative {
namespace {

TEST(Path, KeepsAnArcOnItsCircle) {
    for (const double sweep : {0.3, std::numbers::pi / 2, 2 * std::numbers::pi, -1.0}) {
        Path path;
        path.moveTo({15, 5});
        path.arc({5, 5}, 10, 0, sweep);
        for (const Point& point : path.flattened(20)) {
            EXPECT_NEAR(std::hypot(point.x - 5, point.y - 5), 10, 0.003) << sweep;
        }
        const Point end = path.flattened(20).back();
        EXPECT_NEAR(end.x, 5 + 10 * std::cos(sweep), 1e-9);
        EXPECT_NEAR(end.y, 5 + 10 * std::sin(sweep), 1e-9);
    }
}

TEST(Path, TakesOneCurveForAQuarterCircle) {
    Path path;
    path.moveTo({1, 0});
    path.arc({0, 0}, 1, 0, std::numbers::pi / 2);
    EXPECT_EQ(path.steps().size(), 2U);
}

TEST(Path, IsScaledAboutTheOriginAndThenMoved) {
    Path path;
    path.moveTo({1, 2});
    path.lineTo({3, 4});
    path.close();
    Path expected;
    expected.moveTo({12, 24});
    expected.lineTo({16, 28});
    expected.close();
    EXPECT_EQ(path.transformed(2, {10, 20}).flattened(1), expected.flattened(1));
}

TEST(Path, BoundsReachWhereACurveBulges) {
    Path path;
    path.moveTo({0, 0});
    path.cubicTo({0, 40}, {100, 40}, {100, 0});
    EXPECT_NEAR(path.bounds().height, 30, 0.01);
    EXPECT_EQ(path.bounds().width, 100);
    EXPECT_EQ(Path{}.bounds(), Rect{});
}

} // namespace
} // namespace platform::declarative
