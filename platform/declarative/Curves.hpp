#pragma once

#include <variant>

namespace platform::declarative {

/// Starts and ends at rest; the timing curve is the cubic Bézier with the control points
/// (0.42, 0) and (0.58, 1).
struct EaseInOut {
    double duration; ///< seconds

    friend bool operator==(const EaseInOut&, const EaseInOut&) = default;
};

/// A damped spring of mass 1.
struct Spring {
    double response;        ///< seconds; the period that it would have undamped; more than 0
    double dampingFraction; ///< 1 is critical: the fastest without overshoot

    friend bool operator==(const Spring&, const Spring&) = default;
};

using Curve = std::variant<EaseInOut, Spring>;

/// Where a moving value is, and how fast (units per second) it goes.
struct Motion {
    double value;
    double velocity;
};

/// The value `elapsed` seconds after it left `from` for `target`. A spring takes up the velocity
/// with which it starts; the other curve always starts at rest.
[[nodiscard]] Motion motionAt(const Curve& curve, const Motion& from, double target,
                              double elapsed);

/// Whether the motion is over: the time is up, or the spring is within a ten-thousandth of its
/// target and slower than a thousandth per second.
[[nodiscard]] bool isSettled(const Curve& curve, const Motion& from, double target, double elapsed);

} // namespace platform::declarative
