#pragma once

#include "platform/declarative/Path.hpp"

namespace platform::declarative {

enum class StrokeUse {
    fill, ///< runs clockwise
    hole  ///< runs anticlockwise, and so cuts itself out of what it lies on
};

/// A line of two legs.
struct BentLine {
    Point from;
    Point bend;
    Point to;
};

/// The outline of such a line, `width` wide, with round ends and a round outer
/// corner; one contour that does not cross itself. The legs must be longer than the width, and
/// their bend less than a reversal.
[[nodiscard]] Path strokeOutline(const BentLine& line, double width, StrokeUse use);

/// A triangle, its corners given clockwise on screen and rounded with that radius.
[[nodiscard]] Path roundedTriangle(Point a, Point b, Point c, double radius);

} // namespace platform::declarative
