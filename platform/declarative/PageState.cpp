#include "platform/declarative/PageState.hpp"

#include <algorithm>
#include <set>
#include <utility>

namespace platform::declarative {

namespace {

using IDs = std::set<std::string, std::less<>>;

double valueOr(const PageValues::Map& values, std::string_view id, double otherwise) {
    const auto found = values.find(id);
    return found == values.end() ? otherwise : found->second;
}

void forgetUnless(bool kept, std::optional<std::string>& id) {
    if (!kept) {
        id.reset();
    }
}

} // namespace

double PageValues::hover(std::string_view buttonID) const {
    return valueOr(hovers_, buttonID, 0);
}

double PageValues::animated(std::string_view id, double target) const {
    return valueOr(animated_, id, target);
}

PageValues PageState::valuesAt(double now) const {
    return {hovers_.valuesAt(now), animated_.valuesAt(now)};
}

Interaction PageState::interaction() const {
    return {.pressed = pointerOnHeld_ ? held_ : std::nullopt, .focused = focused_};
}

void PageState::adopt(const PageLayout& page, double now) {
    hitAreas_ = page.hitAreas;
    focusOrder_ = page.focusOrder();
    IDs buttons;
    for (const HitArea& area : hitAreas_) {
        buttons.insert(area.button.id);
        hovers_.begin(area.button.id, 0);
    }
    hovers_.keepOnly(buttons);
    forgetUnless(hovered_ && buttons.contains(*hovered_), hovered_);
    forgetUnless(held_ && buttons.contains(*held_), held_);
    forgetUnless(focused_ && std::ranges::count(focusOrder_, *focused_) > 0, focused_);

    IDs moving;
    for (const AnimatedTarget& each : page.animated) {
        moving.insert(each.id);
        animated_.begin(each.id, each.target);
        animated_.retarget(each.id, each.target, each.curve, now);
    }
    animated_.keepOnly(moving);
}

bool PageState::isMovingAt(double now) const {
    return hovers_.isMovingAt(now) || animated_.isMovingAt(now);
}

std::optional<std::string> PageState::buttonAt(std::optional<Point> point) const {
    const HitArea* const area = point ? hitAt(hitAreas_, *point) : nullptr;
    return area == nullptr ? std::nullopt : std::optional(area->button.id);
}

void PageState::retargetHover(const std::optional<std::string>& id, double target, double now) {
    for (const HitArea& area : hitAreas_) {
        if (id == area.button.id && area.button.hoverFade) {
            hovers_.retarget(area.button.id, target, *area.button.hoverFade, now);
        }
    }
}

void PageState::pointerMoved(std::optional<Point> point, double now) {
    const std::optional<std::string> under = buttonAt(point);
    pointerOnHeld_ = held_ && under == held_;
    if (under != hovered_) {
        retargetHover(hovered_, 0, now);
        retargetHover(under, 1, now);
        hovered_ = under;
    }
}

void PageState::pointerPressed(Point point) {
    held_ = buttonAt(point);
    pointerOnHeld_ = held_.has_value();
}

std::optional<std::string> PageState::pointerReleased(Point point) {
    const std::optional<std::string> held = std::exchange(held_, std::nullopt);
    pointerOnHeld_ = false;
    return held && buttonAt(point) == held ? held : std::nullopt;
}

void PageState::focus(const std::optional<std::string>& buttonID) {
    if (!buttonID || std::ranges::find(focusOrder_, *buttonID) != focusOrder_.end()) {
        focused_ = buttonID;
    }
}

void PageState::moveFocus(FocusDirection direction) {
    if (focusOrder_.empty()) {
        return;
    }
    const std::size_t count = focusOrder_.size();
    const bool forward = direction == FocusDirection::next;
    std::size_t index = forward ? 0 : count - 1;
    if (focused_) {
        const auto at = std::ranges::find(focusOrder_, *focused_) - focusOrder_.begin();
        index = (static_cast<std::size_t>(at) + (forward ? 1 : count - 1)) % count;
    }
    focused_ = focusOrder_[index];
}

void PageState::setMotionPreference(MotionPreference preference) {
    hovers_.setPreference(preference);
    animated_.setPreference(preference);
}

} // namespace platform::declarative
