#include "platform/declarative/Outline.hpp"

#include <cmath>
#include <numbers>

namespace platform::declarative {

namespace {

// How far a continuous corner reaches along each side, in radii, and the angle through which the
// side has turned where its bend hands over to the arc in the corner's middle.
constexpr double fullReach = 1.528665;
constexpr double fullBend = 27 * std::numbers::pi / 180;

// One corner of radius 1 in its own frame: the corner's tip is the origin and the side that leads
// to it comes along the negative `along` axis; `inward` points into the rectangle.
//
// From the side to the arc runs one cubic. Its first three points lie on the side, so that it
// begins without curvature; its last two lie on the arc's tangent, at the distance that makes it
// end with the arc's curvature.
struct CornerProfile {
    double reach;       // where the side ends, distance from the tip
    double control1;    // of the first two control points, likewise
    double control2;    //
    double arcFromTip;  // where the arc begins: distance from the tip along the side
    double arcFromSide; // and from the side
    double bend;        // the angle turned by then, radians
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

// Draws one corner. `along` is the direction of travel on the side that leads to the tip, and
// `inward` the direction in which the path leaves it.
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
    const double reach = corners == CornerStyle::circular ? 1 : halfSide / radius;
    const CornerProfile profile = profileReaching(reach);
    path.moveTo({rect.x + profile.reach * radius, rect.y});
    appendCorner(path, {rect.maxX(), rect.y}, {1, 0}, {0, 1}, radius, profile);
    appendCorner(path, {rect.maxX(), rect.maxY()}, {0, 1}, {-1, 0}, radius, profile);
    appendCorner(path, {rect.x, rect.maxY()}, {-1, 0}, {0, -1}, radius, profile);
    appendCorner(path, {rect.x, rect.y}, {0, -1}, {1, 0}, radius, profile);
    path.close();
    return path;
}

} // namespace platform::declarative
