#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <variant>

namespace platform::declarative {

/// The ease-in-out timing curve: a cubic Bézier with the control points (0.42, 0) and (0.58, 1).
struct EaseInOut {
    double duration; ///< seconds

    friend bool operator==(const EaseInOut&, const EaseInOut&) = default;
};

/// A critically damped spring (damping fraction 1): the fastest that does not overshoot.
struct Spring {
    double response; ///< seconds; the period of the undamped spring; more than 0

    friend bool operator==(const Spring&, const Spring&) = default;
};

using Curve = std::variant<EaseInOut, Spring>;

/// A moving value and its velocity, in units per second.
struct Motion {
    double value;
    double velocity;
};

/// The value `elapsed` seconds after it started from `from` towards `target`. A spring starts with
/// the velocity of `from`; ease-in-out starts at rest.
[[nodiscard]] Motion motionAt(const Curve& curve, const Motion& from, double target,
                              double elapsed);

/// Whether the motion has ended: its duration is over, or the spring is within 0.0001 of its target
/// and slower than 0.001 per second.
[[nodiscard]] bool isSettled(const Curve& curve, const Motion& from, double target, double elapsed);

enum class MotionPreference {
    full,
    reduced ///< values jump to their targets
};

/// Values that move towards their targets, each with an id. Times are seconds of a monotonic clock,
/// passed in by the caller. Main thread.
class Animator {
  public:
    /// Reduced motion also ends the current motions.
    void setPreference(MotionPreference preference) { preference_ = preference; }

    /// Adds a new value at rest; a value with that id stays as it is.
    void begin(const std::string& id, double value);

    /// Moves the value with that id, if any, towards a new target. A spring keeps its velocity.
    void retarget(std::string_view id, double target, const Curve& curve, double now);

    /// Removes all values but these.
    void keepOnly(const std::set<std::string, std::less<>>& ids);

    /// All values at that time, by id.
    [[nodiscard]] std::map<std::string, double, std::less<>> valuesAt(double now) const;

    [[nodiscard]] bool isMovingAt(double now) const;

  private:
    struct Value {
        Motion from;
        double target;
        Curve curve;
        double start;
    };

    [[nodiscard]] bool isMoving(const Value& value, double now) const;
    [[nodiscard]] Motion motionOf(const Value& value, double now) const;

    std::map<std::string, Value, std::less<>> values_;
    MotionPreference preference_ = MotionPreference::full;
};

} // namespace platform::declarative
