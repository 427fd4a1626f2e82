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

constexpr Rect square{0, 0, 112, 112};

double shoelaceArea(const Path& path) {
    const std::vector<Point> points = path.flattened(200);
    double twice = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point a = points[i];
        const Point b = points[(i + 1) % points.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2;
}

// How far the outline lies below the top side at `x`, at its right end.
double depthAt(const Path& path, double x) {
    double depth = -1;
    for (const Point& point : path.flattened(2000)) {
        if (point.y < square.midY() && point.x >= x && (depth < 0 || point.y < depth)) {
            depth = point.y;
        }
    }
    return depth;
}

double distanceTo(const std::vector<Point>& points, Point wanted) {
    double nearest = 1e9;
    for (const Point& point : points) {
        nearest = std::min(nearest, std::hypot(point.x - wanted.x, point.y - wanted.y));
    }
    return nearest;
}

double curvature(Point from, const std::array<Point, 3>& curve, double t) {
    const double u = 1 - t;
    const Point first = (curve[0] - from) * (3 * u * u) + (curve[1] - curve[0]) * (6 * u * t) +
                        (curve[2] - curve[1]) * (3 * t * t);
    const Point second =
        (curve[1] - curve[0] * 2 + from) * (6 * u) + (curve[2] - curve[1] * 2 + curve[0]) * (6 * t);
    return (first.x * second.y - first.y * second.x) / std::pow(std::hypot(first.x, first.y), 3);
}

// The curvatures at both ends of each curve and line, in order round the outline.
std::vector<std::pair<double, double>> curvatures(const Path& path) {
    std::vector<std::pair<double, double>> found;
    Point current;
    for (const PathStep& step : path.steps()) {
        if (step.kind == PathStep::Kind::line) {
            found.emplace_back(0, 0);
            current = step.points[0];
        } else if (step.kind == PathStep::Kind::cubic) {
            found.emplace_back(curvature(current, step.points, 0),
                               curvature(current, step.points, 1));
            current = step.points[2];
        } else if (step.kind == PathStep::Kind::move) {
            current = step.points[0];
        }
    }
    return found;
}

double largestCurvatureJump(const Path& path) {
    const auto ends = curvatures(path);
    double largest = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        largest = std::max(largest, std::abs(ends[(i + 1) % ends.size()].first - ends[i].second));
    }
    return largest;
}

TEST(Outline, WithoutARadiusIsTheRectangle) {
    const Path path = Outline{}.pathIn({1, 2, 30, 40});
    ASSERT_EQ(path.steps().size(), 5U);
    EXPECT_EQ(path.bounds(), (Rect{1, 2, 30, 40}));
    EXPECT_DOUBLE_EQ(shoelaceArea(path), 1200);
}

TEST(Outline, HasCircularCornersWhereContinuousOnesDoNotFit) {
    const Path circle = Outline{24}.pathIn({0, 0, 48, 48});
    EXPECT_NEAR(shoelaceArea(circle), std::numbers::pi * 24 * 24, 0.5);
    const Path pill = Outline{24}.pathIn({0, 0, 220, 48});
    EXPECT_NEAR(shoelaceArea(pill), 220 * 48 - (4 - std::numbers::pi) * 24 * 24, 0.5);
    EXPECT_NEAR(largestCurvatureJump(pill), 1.0 / 24, 1e-3);
}

TEST(Outline, HasNoJumpOfItsCurvature) {
    const Path path = Outline{24}.pathIn(square);
    EXPECT_LT(largestCurvatureJump(path), 0.01 / 24);
}

TEST(Outline, BeginsToCurveFarBeforeACircularCorner) {
    const Path path = Outline{24}.pathIn(square);
    // A circular corner begins 24 before the end of the side, a continuous one 36.7.
    EXPECT_GT(depthAt(path, 112 - 24), 0.15);
    EXPECT_GT(depthAt(path, 112 - 30), 0.01);
    EXPECT_NEAR(depthAt(path, 112 - 36.7), 0, 0.01);
    const double withCircularCorners = 112 * 112 - (4 - std::numbers::pi) * 24 * 24;
    EXPECT_LT(shoelaceArea(path), withCircularCorners - 4);
}

TEST(Outline, MeetsTheCircularCornerOnItsDiagonal) {
    const Path path = Outline{24}.pathIn(square);
    const double diagonal = 24 * (1 - std::numbers::sqrt2 / 2);
    EXPECT_LT(distanceTo(path.flattened(500), {diagonal, diagonal}), 0.05);
}

TEST(Outline, StaysInItsRectangleAndIsSymmetric) {
    for (const double radius : {4.0, 12.0, 20.0, 21.0, 90.0}) {
        const Path path = Outline{radius}.pathIn({10, 20, 220, 42});
        const Rect bounds = path.bounds();
        EXPECT_NEAR(bounds.x, 10, 1e-9);
        EXPECT_NEAR(bounds.y, 20, 1e-9);
        EXPECT_NEAR(bounds.width, 220, 1e-9);
        EXPECT_NEAR(bounds.height, 42, 1e-9);
        const std::vector<Point> points = path.flattened(16);
        for (const Point& point : points) {
            EXPECT_LT(distanceTo(points, {240 - point.x, point.y}), 1e-6) << radius;
            EXPECT_LT(distanceTo(points, {point.x, 82 - point.y}), 1e-6) << radius;
        }
    }
}

TEST(Outline, LimitsTheRadiusToHalfTheShorterSide) {
    EXPECT_EQ(Outline{21}.pathIn({0, 0, 220, 42}), Outline{90}.pathIn({0, 0, 220, 42}));
}

} // namespace
} // namespace platform::declarative
