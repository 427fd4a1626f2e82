#include "platform/declarative/Path.hpp"

#include <cmath>
#include <numbers>

namespace platform::declarative {

void Path::arc(Point centre, double radius, double startAngle, double sweep) {
    const double quarter = std::numbers::pi / 2;
    // A hair of tolerance, so that a sweep of exactly a quarter stays one curve.
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / quarter - 1e-9)));
    const double step = sweep / pieces;
    const double handle = 4.0 / 3.0 * std::tan(step / 4) * radius;
    for (int i = 0; i < pieces; ++i) {
        const double from = startAngle + step * i;
        const double to = from + step;
        const Point start = centre + Point{std::cos(from), std::sin(from)} * radius;
        const Point end = centre + Point{std::cos(to), std::sin(to)} * radius;
        cubicTo(start + Point{-std::sin(from), std::cos(from)} * handle,
                end - Point{-std::sin(to), std::cos(to)} * handle, end);
    }
}

Path Path::transformed(double scale, Point offset) const {
    Path result = *this;
    for (PathStep& step : result.steps_) {
        if (step.kind != PathStep::Kind::close) {
            for (Point& point : step.points) {
                point = point * scale + offset;
            }
        }
    }
    return result;
}

Point cubicPoint(Point from, const std::array<Point, 3>& curve, double t) {
    const double u = 1 - t;
    return from * (u * u * u) + curve[0] * (3 * u * u * t) + curve[1] * (3 * u * t * t) +
           curve[2] * (t * t * t);
}

std::vector<Point> Path::flattened(int perCurve) const {
    std::vector<Point> points;
    Point current;
    for (const PathStep& step : steps_) {
        switch (step.kind) {
        case PathStep::Kind::move:
        case PathStep::Kind::line:
            current = step.points[0];
            points.push_back(current);
            break;
        case PathStep::Kind::cubic:
            for (int i = 1; i <= perCurve; ++i) {
                points.push_back(
                    cubicPoint(current, step.points, static_cast<double>(i) / perCurve));
            }
            current = step.points[2];
            break;
        case PathStep::Kind::close: break;
        }
    }
    return points;
}

Rect Path::bounds() const {
    const std::vector<Point> points = flattened(64);
    if (points.empty()) {
        return {};
    }
    Point low = points.front();
    Point high = points.front();
    for (const Point& point : points) {
        low = {std::min(low.x, point.x), std::min(low.y, point.y)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y)};
    }
    return {low.x, low.y, high.x - low.x, high.y - low.y};
}

} // namespace platform::declarative
