#pragma once

#include "platform/declarative/Element.hpp"
#include "platform/declarative/PaintList.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::declarative {

/// Where a button can be pressed. Buttons come in the order in which they are painted, which is
/// also the order in which the Tab key walks those that are focusable.
struct HitArea {
    Rect rect; ///< the label's frame, less what is clipped away
    ButtonSpec button;
};

/// One thing to be read out, in reading order.
struct AccessibilityNode {
    AccessibilityDescription description;
    Rect frame;
    std::string buttonID; ///< of a button: the one to press; else empty
};

/// What the pointer and the keyboard do to the page at this moment.
struct Interaction {
    /// The button that is held down; it is drawn fainter.
    std::optional<std::string> pressed = std::nullopt;
    /// The button with the keyboard's focus; it is drawn ringed.
    std::optional<std::string> focused = std::nullopt;
};

/// A page with everything in its place.
struct PageLayout {
    PaintList paint;
    std::vector<HitArea> hitAreas;
    std::vector<AccessibilityNode> accessibility;
    std::vector<AnimatedTarget> animated;

    /// The topmost button at that point; nothing where there is none. The pointer dies with this.
    [[nodiscard]] const HitArea* hitAt(Point point) const;

    /// The button with that id; nothing when it is not on this page. The pointer dies with this.
    [[nodiscard]] const HitArea* buttonWithID(std::string_view id) const;

    /// The ids that the Tab key walks, in order.
    [[nodiscard]] std::vector<std::string> focusOrder() const;
};

/// The opacity of a button's label while it is held down.
inline constexpr double pressedOpacity = 0.75;

/// Places the page in a window of that size, centred, and lists how to paint it. Any thread that
/// the measurer may be used on.
[[nodiscard]] PageLayout layOut(const Element& page, Size size, const Measurer& measurer,
                                const Interaction& interaction = {});

} // namespace platform::declarative
