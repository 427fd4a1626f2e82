#pragma once

#include "platform/declarative/Path.hpp"

namespace platform::declarative {

enum class CornerStyle {
    circular,  ///< a quarter of a circle: the curvature jumps where it meets the side
    continuous ///< the side bends into the corner without a jump of its curvature
};

/// The outline of a rectangle whose corners may be rounded; it takes whatever size it is given.
struct Outline {
    double cornerRadius = 0; ///< in points; no more than half the shorter side is used
    CornerStyle corners = CornerStyle::continuous;

    /// The outline in that rectangle, clockwise on screen, closed.
    [[nodiscard]] Path pathIn(const Rect& rect) const;

    friend bool operator==(const Outline&, const Outline&) = default;
};

} // namespace platform::declarative
