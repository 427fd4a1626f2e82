#include "platform/declarative/Path.hpp"

#include <cmath>
#include <numbers>

namespace platform::declarative {

namespace {

// The length of a continuous corner along each side, in radii, and the angle by which the path has
// turned where the Bézier curve meets the circular arc.
constexpr double fullReach = 1.528665;
constexpr double fullBend = 27 * std::numbers::pi / 180;

// One corner of radius 1, relative to its tip: distances back along the side that leads to it, and
// into the rectangle.
//
// One cubic Bézier curve leads from the side to the arc. Its first three points lie on the side, so
// that it starts with curvature 0; its last two lie on the arc's tangent, at the distance at which
// it ends with the arc's curvature.
struct CornerProfile {
    double reach;       // where the curve starts, from the tip
    double control1;    // its control points, from the tip
    double control2;    //
    double arcFromTip;  // where the arc starts, from the tip along the side
    double arcFromSide; // and from the side
    double bend;        // the angle turned up to there, radians
};

CornerProfile profileReaching(double reach) {
    const double bend = fullBend * std::clamp((reach - 1) / (fullReach - 1), 0.0, 1.0);
    if (bend < 1e-6) {
        return {1, 1, 1, 1, 0, 0};
    }
    const double tangent = std::tan(bend / 2); // from the side to the arc, along the arc's tangent
    const double control2 = 1 - std::sin(bend) + tangent * std::cos(bend);
    const double control1 = control2 + 1.5 * tangent * tangent / std::sin(bend);
    return {std::min(reach, fullReach), control1,           control2,
            1 - std::sin(bend),         1 - std::cos(bend), bend};
}

// Appends one corner. `along` is the direction of the side that leads to the tip, `inward` that of
// the side that leaves it.
void appendCorner(Path& path, Point tip, Point along, Point inward, double radius,
                  const CornerProfile& profile) {
    const auto at = [&](double back, double in) {
        return tip - along * (back * radius) + inward * (in * radius);
    };
    path.lineTo(at(profile.reach, 0));
    if (profile.bend > 0) {
        path.cubicTo(at(profile.control1, 0), at(profile.control2, 0),
                     at(profile.arcFromTip, profile.arcFromSide));
    }
    const double startAngle = std::atan2(-inward.y, -inward.x) + profile.bend;
    path.arc(at(1, 1), radius, startAngle, std::numbers::pi / 2 - 2 * profile.bend);
    if (profile.bend > 0) {
        path.cubicTo(at(0, profile.control2), at(0, profile.control1), at(0, profile.reach));
    }
}

} // namespace

void Path::arc(Point centre, double radius, double startAngle, double sweep) {
    const double quarter = std::numbers::pi / 2;
    // The tolerance keeps a sweep of exactly a quarter circle one curve despite rounding.
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

Path Outline::pathIn(const Rect& rect) const {
    Path path;
    const double halfSide = std::min(rect.width, rect.height) / 2;
    const double radius = std::min(cornerRadius, halfSide);
    if (radius <= 0) {
        path.moveTo({rect.x, rect.y});
        path.lineTo({rect.maxX(), rect.y});
        path.lineTo({rect.maxX(), rect.maxY()});
        path.lineTo({rect.x, rect.maxY()});
        path.close();
        return path;
    }
    const CornerProfile profile = profileReaching(halfSide / radius);
    path.moveTo({rect.x + profile.reach * radius, rect.y});
    appendCorner(path, {rect.maxX(), rect.y}, {1, 0}, {0, 1}, radius, profile);
    appendCorner(path, {rect.maxX(), rect.maxY()}, {0, 1}, {-1, 0}, radius, profile);
    appendCorner(path, {rect.x, rect.maxY()}, {-1, 0}, {0, -1}, radius, profile);
    appendCorner(path, {rect.x, rect.y}, {0, -1}, {1, 0}, radius, profile);
    path.close();
    return path;
}

} // namespace platform::declarative
