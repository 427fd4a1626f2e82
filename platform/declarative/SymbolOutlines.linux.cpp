#include "platform/declarative/SymbolOutlines.linux.hpp"

#include <array>
#include <cmath>
#include <numbers>

namespace platform::declarative {

namespace {

// Outlines are for a font of 1 point: the baseline is y = 0, the cap height 0.705 (y = -0.705). The
// filled symbols are centred on half the cap height.
constexpr double capitalsMiddle = -0.3525;
constexpr double pi = std::numbers::pi;

// Paths are filled by the non-zero winding rule: `fill` runs clockwise, `hole` anticlockwise.
enum class Winding { fill, hole };

// A line of two segments.
struct BentLine {
    Point from;
    Point bend;
    Point to;
};

Point unit(Point vector) {
    return vector * (1 / std::hypot(vector.x, vector.y));
}

double cross(Point a, Point b) {
    return a.x * b.y - a.y * b.x;
}

double angleOf(Point direction) {
    return std::atan2(direction.y, direction.x);
}

// The unit vector to the left of a direction, on screen.
Point leftOf(Point direction) {
    return {direction.y, -direction.x};
}

// The left side of the line, from its first to its last point. At the bend the inner side has a
// sharp corner and the outer side a round one.
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

// A round cap, from the left side of the line to its right side.
void appendEnd(Path& path, Point end, Point direction, double half) {
    path.arc(end, half, angleOf(leftOf(direction)), pi);
}

// The same contour in the opposite direction.
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

// The contour of the line, `width` wide, with round caps and a round join; it does not intersect
// itself. Segments must be longer than the width, and the bend less than 180 degrees.
Path strokeOutline(const BentLine& line, double width, Winding winding) {
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
    return winding == Winding::fill ? path : reversed(path);
}

// A triangle with rounded corners. The corners are given clockwise on screen.
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

Path circle(Point centre, double radius, Winding winding) {
    Path path;
    path.moveTo(centre + Point{radius, 0});
    path.arc(centre, radius, 0, winding == Winding::fill ? 2 * pi : -2 * pi);
    path.close();
    return path;
}

// A hole: a bar with round ends that is thicker at the top.
Path taperedBar(Point top, double topRadius, Point bottom, double bottomRadius) {
    const double slant = std::asin((topRadius - bottomRadius) / (bottom.y - top.y));
    Path path;
    path.moveTo(top + Point{std::cos(slant), std::sin(slant)} * topRadius);
    path.arc(top, topRadius, slant, -(pi + 2 * slant));
    path.lineTo(bottom + Point{-std::cos(slant), std::sin(slant)} * bottomRadius);
    path.arc(bottom, bottomRadius, pi - slant, -(pi - 2 * slant));
    path.close();
    return path;
}

Path warningTriangle() {
    const double halfWidth = 0.525;
    const double top = -0.835;
    const double bottom = 0.085;
    const double rounding = 0.105;
    Path path = roundedTriangle({0, top - 0.075}, {halfWidth + 0.08, bottom},
                                {-halfWidth - 0.08, bottom}, rounding);
    path.append(taperedBar({0, -0.555}, 0.058, {0, -0.285}, 0.043));
    path.append(circle({0, -0.115}, 0.062, Winding::hole));
    return path;
}

Path checkmarkCircle() {
    Path path = circle({0, capitalsMiddle}, 0.498, Winding::fill);
    path.append(
        strokeOutline({{-0.205, -0.325}, {-0.058, -0.160}, {0.212, -0.560}}, 0.088, Winding::hole));
    return path;
}

double strokeWidth(FontWeight weight) {
    switch (weight) {
    case FontWeight::light: return 0.066;
    case FontWeight::regular: return 0.084;
    case FontWeight::medium: return 0.098;
    case FontWeight::semibold: return 0.112;
    }
    return 0;
}

// Shaft and head overlap in the corner; both wind the same way, so the overlap stays filled.
Path arrowUpRight(FontWeight weight) {
    const double width = strokeWidth(weight);
    const double low = -width / 2;
    const double size = 0.64 - width;
    const Point corner{size, low - size};
    Path path = strokeOutline({{size * 0.20, corner.y}, corner, {corner.x, low - size * 0.20}},
                              width, Winding::fill);
    path.append(
        strokeOutline({{0, low}, (corner + Point{0, low}) * 0.5, corner}, width, Winding::fill));
    return path;
}

std::optional<Path> unitOutline(std::string_view name, FontWeight weight) {
    if (name == "exclamationmark.triangle.fill") {
        return warningTriangle();
    }
    if (name == "checkmark.circle.fill") {
        return checkmarkCircle();
    }
    if (name == "arrow.up.right") {
        return arrowUpRight(weight);
    }
    return std::nullopt;
}

} // namespace

std::optional<SymbolOutline> symbolOutline(std::string_view name, const Font& font) {
    const std::optional<Path> unit = unitOutline(name, font.weight);
    if (!unit) {
        return std::nullopt;
    }
    const Rect ink = unit->bounds();
    return SymbolOutline{
        .path = unit->transformed(font.size, Point{-ink.x, -ink.y} * font.size),
        .metrics = {.size = {ink.width * font.size, ink.height * font.size},
                    .firstBaseline = -ink.y * font.size},
    };
}

} // namespace platform::declarative
