#include "platform/declarative/Animation.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace platform::declarative {

namespace {

// One coordinate of a cubic Bézier curve from 0 to 1.
double bezier(double control1, double control2, double t) {
    const double u = 1 - t;
    return 3 * u * u * t * control1 + 3 * u * t * t * control2 + t * t * t;
}

double easedFraction(double time) {
    // The time coordinate is monotonic in the parameter: bisection finds it.
    double low = 0;
    double high = 1;
    for (int i = 0; i < 48; ++i) {
        const double middle = (low + high) / 2;
        (bezier(0.42, 0.58, middle) < time ? low : high) = middle;
    }
    return bezier(0.0, 1.0, (low + high) / 2);
}

Motion easedMotion(const EaseInOut& curve, double from, double target, double elapsed) {
    if (elapsed <= 0) {
        return {from, 0};
    }
    if (elapsed >= curve.duration) {
        return {target, 0};
    }
    const double sample = 1e-4;
    const double time = elapsed / curve.duration;
    const double slope = (easedFraction(std::min(1.0, time + sample)) -
                          easedFraction(std::max(0.0, time - sample))) /
                         (2 * sample);
    return {from + (target - from) * easedFraction(time), (target - from) * slope / curve.duration};
}

// The closed form of x'' + 2 w x' + w^2 x = 0, where x is the distance from the target.
Motion springMotion(const Spring& spring, const Motion& from, double target, double elapsed) {
    const double w = 2 * std::numbers::pi / spring.response;
    const double t = std::max(elapsed, 0.0);
    const double x0 = from.value - target;
    const double slope = from.velocity + w * x0;
    const double decay = std::exp(-w * t);
    return {target + (x0 + slope * t) * decay, (from.velocity - w * slope * t) * decay};
}

} // namespace

Motion motionAt(const Curve& curve, const Motion& from, double target, double elapsed) {
    if (const auto* spring = std::get_if<Spring>(&curve)) {
        return springMotion(*spring, from, target, elapsed);
    }
    return easedMotion(std::get<EaseInOut>(curve), from.value, target, elapsed);
}

bool isSettled(const Curve& curve, const Motion& from, double target, double elapsed) {
    if (const auto* ease = std::get_if<EaseInOut>(&curve)) {
        return elapsed >= ease->duration;
    }
    const Motion now = motionAt(curve, from, target, elapsed);
    return std::abs(now.value - target) < 1e-4 && std::abs(now.velocity) < 1e-3;
}

bool Animator::isMoving(const Value& value, double now) const {
    return preference_ == MotionPreference::full &&
           !isSettled(value.curve, value.from, value.target, now - value.start);
}

Motion Animator::motionOf(const Value& value, double now) const {
    return isMoving(value, now) ? motionAt(value.curve, value.from, value.target, now - value.start)
                                : Motion{value.target, 0};
}

void Animator::begin(const std::string& id, double value) {
    constexpr double longAgo = -std::numeric_limits<double>::infinity();
    values_.try_emplace(id, Value{{value, 0}, value, EaseInOut{0}, longAgo});
}

void Animator::retarget(std::string_view id, double target, const Curve& curve, double now) {
    const auto found = values_.find(id);
    if (found == values_.end() || found->second.target == target) {
        return;
    }
    found->second = Value{motionOf(found->second, now), target, curve, now};
}

void Animator::keepOnly(const std::set<std::string, std::less<>>& ids) {
    std::erase_if(values_, [&ids](const auto& entry) { return !ids.contains(entry.first); });
}

std::map<std::string, double, std::less<>> Animator::valuesAt(double now) const {
    std::map<std::string, double, std::less<>> values;
    for (const auto& [id, value] : values_) {
        values.emplace(id, motionOf(value, now).value);
    }
    return values;
}

bool Animator::isMovingAt(double now) const {
    return std::ranges::any_of(
        values_, [this, now](const auto& entry) { return isMoving(entry.second, now); });
}

} // namespace platform::declarative
