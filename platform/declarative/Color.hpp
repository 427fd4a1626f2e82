#pragma once

#include <cstdint>

namespace platform::declarative {

/// An sRGB colour; components from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    /// From 8-bit components, at full opacity.
    static constexpr Color fromBytes(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
        return {red / 255.0, green / 255.0, blue / 255.0, 1.0};
    }

    /// The same colour with its opacity multiplied by `factor`.
    [[nodiscard]] constexpr Color withOpacity(double factor) const {
        return {red, green, blue, alpha * factor};
    }

    friend constexpr bool operator==(const Color&, const Color&) = default;
};

/// The linear interpolation from `from` (0) to `to` (1). The ends are exact.
[[nodiscard]] constexpr Color mixed(const Color& from, const Color& to, double fraction) {
    const auto between = [fraction](double a, double b) {
        return a * (1 - fraction) + b * fraction;
    };
    return {between(from.red, to.red), between(from.green, to.green), between(from.blue, to.blue),
            between(from.alpha, to.alpha)};
}

} // namespace platform::declarative
