#pragma once

#include "platform/declarative/Geometry.hpp"

#include <array>
#include <vector>

namespace platform::declarative {

/// One step of a path. `points` holds the end point of a move or line, or the two control points
/// and the end point of a cubic Bézier curve; the rest is unused.
struct PathStep {
    enum class Kind { move, line, cubic, close };

    Kind kind;
    std::array<Point, 3> points{};

    friend bool operator==(const PathStep&, const PathStep&) = default;
};

/// A path of lines and cubic Bézier curves, filled by the non-zero winding rule: a hole winds the
/// opposite way. A plain value.
class Path {
  public:
    void moveTo(Point to) { steps_.push_back({PathStep::Kind::move, {to}}); }

    void lineTo(Point to) { steps_.push_back({PathStep::Kind::line, {to}}); }

    void cubicTo(Point control1, Point control2, Point to) {
        steps_.push_back({PathStep::Kind::cubic, {control1, control2, to}});
    }

    /// A circular arc, as curves of at most a quarter circle each. The path must be at the start of
    /// the arc. Angles are in radians, from the x axis towards the y axis, that is clockwise on
    /// screen; `sweep` may be negative.
    void arc(Point centre, double radius, double startAngle, double sweep);

    void close() { steps_.push_back({PathStep::Kind::close, {}}); }

    void append(const Path& other) {
        steps_.insert(steps_.end(), other.steps_.begin(), other.steps_.end());
    }

    [[nodiscard]] const std::vector<PathStep>& steps() const { return steps_; }

    /// Scaled about the origin, then moved.
    [[nodiscard]] Path transformed(double scale, Point offset) const;

    /// Points along the path: `perCurve` for each curve, the end for each line.
    [[nodiscard]] std::vector<Point> flattened(int perCurve) const;

    /// The bounds of the flattened path; within 0.01 % of the exact one.
    [[nodiscard]] Rect bounds() const;

    friend bool operator==(const Path&, const Path&) = default;

  private:
    std::vector<PathStep> steps_;
};

/// The point of a cubic Bézier curve at `t` from 0 to 1.
[[nodiscard]] Point cubicPoint(Point from, const std::array<Point, 3>& curve, double t);

/// The outline of a rectangle with rounded corners. The corners are continuous: the curvature does
/// not jump where side and corner meet. Where there is no room for that they are circular.
struct Outline {
    double cornerRadius = 0; ///< points; limited to half the shorter side

    /// The outline of that rectangle, clockwise on screen, closed.
    [[nodiscard]] Path pathIn(const Rect& rect) const;

    friend bool operator==(const Outline&, const Outline&) = default;
};

} // namespace platform::declarative
