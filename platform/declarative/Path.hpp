#pragma once

#include "platform/declarative/Geometry.hpp"

#include <array>
#include <vector>

namespace platform::declarative {

/// One step of an outline. `points` holds the end point for a move and a line, and the two control
/// points and the end point for a cubic Bézier curve; the rest of it is unused.
struct PathStep {
    enum class Kind { move, line, cubic, close };

    Kind kind;
    std::array<Point, 3> points{};

    friend bool operator==(const PathStep&, const PathStep&) = default;
};

/// An outline of lines and cubic Bézier curves, filled by the non-zero winding rule: a hole runs
/// the other way round. A plain value.
class Path {
  public:
    void moveTo(Point to) { steps_.push_back({PathStep::Kind::move, {to}}); }

    void lineTo(Point to) { steps_.push_back({PathStep::Kind::line, {to}}); }

    void cubicTo(Point control1, Point control2, Point to) {
        steps_.push_back({PathStep::Kind::cubic, {control1, control2, to}});
    }

    /// A part of a circle, as curves of at most a quarter each. The path must stand at the arc's
    /// start. Angles are in radians, from the x axis towards the y axis, that is clockwise on
    /// screen; `sweep` may be negative.
    void arc(Point centre, double radius, double startAngle, double sweep);

    void close() { steps_.push_back({PathStep::Kind::close, {}}); }

    void append(const Path& other) {
        steps_.insert(steps_.end(), other.steps_.begin(), other.steps_.end());
    }

    [[nodiscard]] const std::vector<PathStep>& steps() const { return steps_; }

    /// Scaled about the origin, then moved.
    [[nodiscard]] Path transformed(double scale, Point offset) const;

    /// Points along the outline, `perCurve` for each curve and the end for each line.
    [[nodiscard]] std::vector<Point> flattened(int perCurve) const;

    /// The smallest rectangle around the flattened outline; within 0.01 % of the exact one.
    [[nodiscard]] Rect bounds() const;

    friend bool operator==(const Path&, const Path&) = default;

  private:
    std::vector<PathStep> steps_;
};

/// The point of a cubic Bézier curve at `t` from 0 to 1.
[[nodiscard]] Point cubicPoint(Point from, const std::array<Point, 3>& curve, double t);

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
