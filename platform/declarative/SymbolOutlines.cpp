#include "platform/declarative/SymbolOutlines.hpp"

#include "platform/declarative/StrokeOutline.hpp"

#include <cmath>
#include <numbers>

namespace platform::declarative {

namespace {

// Outlines are drawn for a font of 1 point: the baseline is y = 0 and capitals reach up to -0.705.
// The filled symbols are centred on the middle of the capitals.
constexpr double capitalsMiddle = -0.3525;
constexpr double pi = std::numbers::pi;

// Clockwise fills; anticlockwise cuts a hole into what is filled.
enum class Winding { fill, hole };

Path circle(Point centre, double radius, Winding winding) {
    Path path;
    path.moveTo(centre + Point{radius, 0});
    path.arc(centre, radius, 0, winding == Winding::fill ? 2 * pi : -2 * pi);
    path.close();
    return path;
}

// A bar with round ends that is thicker at its top, cut out as a hole.
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
    path.append(strokeOutline({{-0.205, -0.325}, {-0.058, -0.160}, {0.212, -0.560}}, 0.088,
                              StrokeUse::hole));
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

// The shaft runs into the head's corner; both are filled, so that their overlap does no harm.
Path arrowUpRight(FontWeight weight) {
    const double width = strokeWidth(weight);
    const double low = -width / 2;
    const double size = 0.64 - width;
    const Point corner{size, low - size};
    Path path = strokeOutline({{size * 0.20, corner.y}, corner, {corner.x, low - size * 0.20}},
                              width, StrokeUse::fill);
    path.append(
        strokeOutline({{0, low}, (corner + Point{0, low}) * 0.5, corner}, width, StrokeUse::fill));
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
