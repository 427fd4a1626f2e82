#include "platform/declarative/SymbolOutlines.linux.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace platform::declarative {
namespace {

SymbolOutline outlineOf(std::string_view name, double size,
                        FontWeight weight = FontWeight::regular) {
    return symbolOutline(name, {size, weight}).value_or(SymbolOutline{});
}

// How often the outline winds round the point; 0 is not filled. Each contour is closed.
int windingAround(const Path& path, Point centre) {
    double angle = 0;
    Point current;
    Point start;
    const auto turnTo = [&](Point to) {
        const Point a = current - centre;
        const Point b = to - centre;
        angle += std::atan2(a.x * b.y - a.y * b.x, a.x * b.x + a.y * b.y);
        current = to;
    };
    for (const PathStep& step : path.steps()) {
        switch (step.kind) {
        case PathStep::Kind::move: current = start = step.points[0]; break;
        case PathStep::Kind::line: turnTo(step.points[0]); break;
        case PathStep::Kind::cubic: {
            const Point from = current;
            for (int i = 1; i <= 32; ++i) {
                turnTo(cubicPoint(from, step.points, i / 32.0));
            }
            break;
        }
        case PathStep::Kind::close: turnTo(start); break;
        }
    }
    return static_cast<int>(std::lround(angle / (2 * std::numbers::pi)));
}

TEST(SymbolOutline, IsKnownForThreeNamesOnly) {
    EXPECT_FALSE(symbolOutline("checkmark.circle", {48}).has_value());
    EXPECT_FALSE(symbolOutline("", {48}).has_value());
}

TEST(SymbolOutline, FillsItsBoxExactlyAndGrowsWithTheFont) {
    for (const char* name :
         {"exclamationmark.triangle.fill", "checkmark.circle.fill", "arrow.up.right"}) {
        const SymbolOutline small = outlineOf(name, 11);
        const SymbolOutline large = outlineOf(name, 44);
        const Rect ink = large.path.bounds();
        EXPECT_NEAR(ink.x, 0, 1e-9) << name;
        EXPECT_NEAR(ink.y, 0, 1e-9) << name;
        EXPECT_NEAR(ink.width, large.metrics.size.width, 1e-9) << name;
        EXPECT_NEAR(ink.height, large.metrics.size.height, 1e-9) << name;
        EXPECT_NEAR(large.metrics.size.width, 4 * small.metrics.size.width, 1e-9) << name;
        EXPECT_NEAR(large.metrics.firstBaseline, 4 * small.metrics.firstBaseline, 1e-9) << name;
    }
}

TEST(SymbolOutline, CutsTheCheckMarkOutOfADiscAsLargeAsTheFont) {
    const SymbolOutline check = outlineOf("checkmark.circle.fill", 100);
    EXPECT_NEAR(check.metrics.size.width, 100, 1);
    EXPECT_NEAR(check.metrics.size.height, 100, 1);
    const auto at = [&](double x, double y) { return windingAround(check.path, {x, y}); };
    EXPECT_NE(at(50, 12), 0);
    EXPECT_EQ(at(44, 69), 0); // the mark's bend
    EXPECT_EQ(at(58, 49), 0); // its long leg
    EXPECT_EQ(at(36, 60), 0); // its short leg
    EXPECT_NE(at(44, 45), 0); // between its legs
    EXPECT_EQ(at(2, 2), 0);   // outside of the disc
}

TEST(SymbolOutline, CutsTheExclamationMarkOutOfATriangle) {
    const SymbolOutline warning = outlineOf("exclamationmark.triangle.fill", 100);
    const double middle = warning.metrics.size.width / 2;
    const double baseline = warning.metrics.firstBaseline;
    const auto at = [&](double x, double y) { return windingAround(warning.path, {x, y}); };
    EXPECT_EQ(at(middle, baseline - 45), 0);      // the bar
    EXPECT_NE(at(middle, baseline - 20.5), 0);    // between bar and dot
    EXPECT_EQ(at(middle, baseline - 11.5), 0);    // the dot
    EXPECT_NE(at(middle + 30, baseline - 5), 0);  // a corner of the triangle
    EXPECT_EQ(at(middle + 40, baseline - 60), 0); // outside of it
}

TEST(SymbolOutline, StandsTheArrowOnTheBaselineWithItsHeadUpAndRight) {
    const SymbolOutline arrow = outlineOf("arrow.up.right", 100);
    EXPECT_NEAR(arrow.metrics.firstBaseline, arrow.metrics.size.height, 1e-9);
    const double side = arrow.metrics.size.width;
    const auto at = [&](double x, double y) { return windingAround(arrow.path, {x, y}); };
    EXPECT_NE(at(side / 2, side / 2), 0); // the shaft
    EXPECT_NE(at(side / 2, 4), 0);        // the head's two arms
    EXPECT_NE(at(side - 4, side / 2), 0);
    EXPECT_EQ(at(side * 0.2, side * 0.3), 0);
    EXPECT_EQ(at(side * 0.8, side * 0.9), 0);
}

TEST(SymbolOutline, DrawsAHeavierArrowThicker) {
    const auto isInked = [](FontWeight weight) {
        const SymbolOutline arrow = outlineOf("arrow.up.right", 100, weight);
        return windingAround(arrow.path, {arrow.metrics.size.width / 2, 9}) != 0;
    };
    EXPECT_FALSE(isInked(FontWeight::light));
    EXPECT_FALSE(isInked(FontWeight::regular));
    EXPECT_TRUE(isInked(FontWeight::medium));
    EXPECT_TRUE(isInked(FontWeight::semibold));
}

} // namespace
} // namespace platform::declarative
