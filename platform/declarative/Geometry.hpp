#pragma once

#include <algorithm>

namespace platform::declarative {

/// All lengths are points, the origin is top left, y grows downwards.
struct Point {
    double x = 0;
    double y = 0;

    friend constexpr bool operator==(const Point&, const Point&) = default;

    friend constexpr Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }

    friend constexpr Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }

    friend constexpr Point operator*(Point a, double factor) {
        return {a.x * factor, a.y * factor};
    }
};

struct Size {
    double width = 0;
    double height = 0;

    friend constexpr bool operator==(const Size&, const Size&) = default;
};

struct Insets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;

    friend constexpr bool operator==(const Insets&, const Insets&) = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] constexpr double maxX() const { return x + width; }

    [[nodiscard]] constexpr double maxY() const { return y + height; }

    [[nodiscard]] constexpr double midX() const { return x + width / 2; }

    [[nodiscard]] constexpr double midY() const { return y + height / 2; }

    [[nodiscard]] constexpr bool isEmpty() const { return width <= 0 || height <= 0; }

    /// The left and top edges belong to the rectangle, the right and bottom ones do not.
    [[nodiscard]] constexpr bool contains(Point p) const {
        return p.x >= x && p.x < maxX() && p.y >= y && p.y < maxY();
    }

    /// Grown by `distance` on each side; a negative one shrinks.
    [[nodiscard]] constexpr Rect outsetBy(double distance) const {
        return {x - distance, y - distance, width + 2 * distance, height + 2 * distance};
    }

    /// The common part; of size 0 when there is none.
    [[nodiscard]] constexpr Rect intersection(const Rect& other) const {
        const double left = std::max(x, other.x);
        const double top = std::max(y, other.y);
        return {left, top, std::max(0.0, std::min(maxX(), other.maxX()) - left),
                std::max(0.0, std::min(maxY(), other.maxY()) - top)};
    }

    friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

} // namespace platform::declarative
