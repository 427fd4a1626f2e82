#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
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

enum class MotionPreference {
    full,
    reduced ///< values jump to where they would go
};

/// Numbers that move towards their targets, each known by the identity of the element that it
/// belongs to. Times are seconds of a clock that never runs backwards, handed in by the caller.
/// Main thread.
class Animator {
  public:
    /// Asking for reduced motion also ends what moves at the moment.
    void setPreference(MotionPreference preference) { preference_ = preference; }

    /// Starts a value that is not known yet at `value`, at rest; leaves a known one alone.
    void begin(const std::string& id, double value);

    /// Sends a known value towards `target`, unless that is where it goes already. A spring that
    /// is turned round keeps its velocity.
    void retarget(std::string_view id, double target, const Curve& curve, double now);

    /// Forgets all values but these.
    void keepOnly(const std::set<std::string, std::less<>>& ids);

    /// All values as they stand.
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
