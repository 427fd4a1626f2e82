#include "platform/declarative/Animator.hpp"

#include <algorithm>
#include <limits>

namespace platform::declarative {

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
