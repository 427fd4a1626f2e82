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

/// The moving numbers that a page is computed from, at one moment. A plain value.
class PageValues {
  public:
    using Map = std::map<std::string, double, std::less<>>;

    /// Nothing hovers and nothing moves.
    PageValues() = default;

    PageValues(Map hovers, Map animated)
        : hovers_(std::move(hovers)), animated_(std::move(animated)) {}

    /// How far the button is into its hovered look: 0 resting, 1 hovered. 0 for one that has just
    /// appeared.
    [[nodiscard]] double hover(std::string_view buttonID) const;

    /// Where the number is that moves towards `target`; `target` itself for one that has just
    /// appeared.
    [[nodiscard]] double animated(std::string_view id, double target) const;

  private:
    Map hovers_;
    Map animated_;
};

/// What a mounted page remembers between two pictures: hover, press, focus and moving numbers, each
/// by the identity of its element. State begins afresh when an element appears and is lost when it
/// disappears. Times are seconds of one clock that never runs backwards. Main thread.
///
/// For each picture: compute the page from `valuesAt(now)`, lay it out with `interaction()`, hand
/// the layout to `adopt`, paint it; and do it again soon while `isMovingAt(now)`.
class PageState {
  public:
    [[nodiscard]] PageValues valuesAt(double now) const;
    [[nodiscard]] Interaction interaction() const;

    /// Takes note of what is on the page now: forgets what is gone, and sends numbers whose target
    /// has changed on their way.
    void adopt(const PageLayout& page, double now);

    /// Whether the next picture will differ although nothing happens.
    [[nodiscard]] bool isMovingAt(double now) const;

    /// The pointer is there now; none: it has left the page.
    void pointerMoved(std::optional<Point> point, double now);

    /// The pointer's main button went down there.
    void pointerPressed(Point point);

    /// It was let go there: the id of the button to run, when it went down on the same one.
    [[nodiscard]] std::optional<std::string> pointerReleased(Point point);

    enum class FocusDirection { next, previous };

    /// Walks the focus to the next or previous button, round at the ends; from nowhere it goes to
    /// the first or the last one.
    void moveFocus(FocusDirection direction);

    /// The button that Space and Return press; none when nothing has the focus.
    [[nodiscard]] const std::optional<std::string>& focused() const { return focused_; }

    /// Gives the focus to that button, when it can have it; without an id, to none.
    void focus(const std::optional<std::string>& buttonID);

    void setMotionPreference(MotionPreference preference);

  private:
    [[nodiscard]] std::optional<std::string> buttonAt(std::optional<Point> point) const;
    void sendHover(const std::optional<std::string>& id, double target, double now);

    std::vector<HitArea> hitAreas_;
    std::vector<std::string> focusOrder_;
    std::optional<std::string> hovered_;
    std::optional<std::string> held_; // went down and was not let go yet
    bool pointerOnHeld_ = false;
    std::optional<std::string> focused_;
    Animator hovers_;
    Animator animated_;
};

} // namespace platform::declarative
