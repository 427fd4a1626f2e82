#include "platform/declarative/StrokeOutline.hpp"

#include <array>
#include <cmath>
#include <numbers>

namespace platform::declarative {

namespace {

constexpr double pi = std::numbers::pi;

Point unit(Point vector) {
    return vector * (1 / std::hypot(vector.x, vector.y));
}

double cross(Point a, Point b) {
    return a.x * b.y - a.y * b.x;
}

double angleOf(Point direction) {
    return std::atan2(direction.y, direction.x);
}

// To the left of the direction of travel, as seen on screen.
Point leftOf(Point direction) {
    return {direction.y, -direction.x};
}

// The side of the line that is on the left when it is walked from its first to its last point. At
// the bend the inner side meets in a point and the outer one goes round.
void appendLeftSide(Path& path, const BentLine& line, double half) {
    const Point first = unit(line.bend - line.from);
    const Point second = unit(line.to - line.bend);
    const double turn = std::atan2(cross(first, second), first.x * second.x + first.y * second.y);
    if (turn > 0) {
        path.lineTo(line.bend + leftOf(first) * half);
        path.arc(line.bend, half, angleOf(leftOf(first)), turn);
    } else {
        const double back = half * std::tan(-turn / 2);
        path.lineTo(line.bend + leftOf(first) * half - first * back);
    }
    path.lineTo(line.to + leftOf(second) * half);
}

// Round the end of the line, from its left side to its right side.
void appendEnd(Path& path, Point end, Point direction, double half) {
    path.arc(end, half, angleOf(leftOf(direction)), pi);
}

// The same contour the other way round.
Path reversed(const Path& path) {
    const std::vector<PathStep>& steps = path.steps();
    std::vector<PathStep> drawn;
    std::vector<Point> ends;
    for (const PathStep& step : steps) {
        if (step.kind != PathStep::Kind::close) {
            drawn.push_back(step);
            ends.push_back(step.points[step.kind == PathStep::Kind::cubic ? 2 : 0]);
        }
    }
    Path result;
    result.moveTo(ends.back());
    for (std::size_t i = drawn.size() - 1; i > 0; --i) {
        if (drawn[i].kind == PathStep::Kind::cubic) {
            result.cubicTo(drawn[i].points[1], drawn[i].points[0], ends[i - 1]);
        } else {
            result.lineTo(ends[i - 1]);
        }
    }
    result.close();
    return result;
}

} // namespace

Path strokeOutline(const BentLine& line, double width, StrokeUse use) {
    const double half = width / 2;
    const Point first = unit(line.bend - line.from);
    const Point second = unit(line.to - line.bend);
    Path path;
    path.moveTo(line.from + leftOf(first) * half);
    appendLeftSide(path, line, half);
    appendEnd(path, line.to, second, half);
    appendLeftSide(path, {line.to, line.bend, line.from}, half);
    appendEnd(path, line.from, first * -1, half);
    path.close();
    return use == StrokeUse::fill ? path : reversed(path);
}

Path roundedTriangle(Point a, Point b, Point c, double radius) {
    const std::array<Point, 3> corners{a, b, c};
    Path path;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point tip = corners[i];
        const Point in = unit(tip - corners[(i + 2) % 3]);
        const Point out = unit(corners[(i + 1) % 3] - tip);
        const double turn = std::atan2(cross(in, out), in.x * out.x + in.y * out.y);
        const double back = radius * std::tan(turn / 2);
        const Point start = tip - in * back;
        if (i == 0) {
            path.moveTo(start);
        } else {
            path.lineTo(start);
        }
        path.arc(start - leftOf(in) * radius, radius, angleOf(leftOf(in)), turn);
    }
    path.close();
    return path;
}

} // namespace platform::declarative
