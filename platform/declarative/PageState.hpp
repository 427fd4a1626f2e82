#pragma once

#include "platform/declarative/Animation.hpp"
#include "platform/declarative/PageLayout.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform::declarative {

/// The animated values that a page is computed from, at one moment. A plain value.
class PageValues {
  public:
    using Map = std::map<std::string, double, std::less<>>;

    /// Nothing hovers and nothing moves.
    PageValues() = default;

    PageValues(Map hovers, Map animated)
        : hovers_(std::move(hovers)), animated_(std::move(animated)) {}

    /// The progress of the button's hover fade: 0 not hovered, 1 hovered. 0 for a new button.
    [[nodiscard]] double hover(std::string_view buttonID) const;

    /// The current value of an animated number; `target` for a new one.
    [[nodiscard]] double animated(std::string_view id, double target) const;

  private:
    Map hovers_;
    Map animated_;
};

/// The state of a mounted page between two frames: hover, press, focus and animated numbers, by the
/// ids of their elements. State begins when an element appears and ends when it disappears. Times
/// are seconds of one monotonic clock. Main thread.
///
/// For each frame: compute the page from `valuesAt(now)`, lay it out with `interaction()`, pass the
/// layout to `adopt`, paint it; draw the next frame soon while `isMovingAt(now)`.
class PageState {
  public:
    [[nodiscard]] PageValues valuesAt(double now) const;
    [[nodiscard]] Interaction interaction() const;

    /// Takes over the page's elements: drops the state of those that are gone, and starts the
    /// motion of numbers whose target has changed.
    void adopt(const PageLayout& page, double now);

    /// Whether anything is moving, so that the next frame differs.
    [[nodiscard]] bool isMovingAt(double now) const;

    /// The pointer is at that point; none: it has left the page.
    void pointerMoved(std::optional<Point> point, double now);

    /// The main mouse button was pressed at that point.
    void pointerPressed(Point point);

    /// It was released at that point. The id of the button to run, if it was pressed on the same
    /// one.
    [[nodiscard]] std::optional<std::string> pointerReleased(Point point);

    enum class FocusDirection { next, previous };

    /// Moves the focus to the next or previous button and wraps around; without a focus, to the
    /// first or the last one.
    void moveFocus(FocusDirection direction);

    /// The button with the focus, which Space and Return press; none when there is no focus.
    [[nodiscard]] const std::optional<std::string>& focused() const { return focused_; }

    /// Gives the focus to that button, if it is on the page; without an id, removes the focus.
    void focus(const std::optional<std::string>& buttonID);

    void setMotionPreference(MotionPreference preference);

  private:
    [[nodiscard]] std::optional<std::string> buttonAt(std::optional<Point> point) const;
    void retargetHover(const std::optional<std::string>& id, double target, double now);

    std::vector<HitArea> hitAreas_;
    std::vector<std::string> focusOrder_;
    std::optional<std::string> hovered_;
    std::optional<std::string> held_; // pressed and not yet released
    bool pointerOnHeld_ = false;
    std::optional<std::string> focused_;
    Animator hovers_;
    Animator animated_;
};

} // namespace platform::declarative
