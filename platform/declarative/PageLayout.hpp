#pragma once

#include "platform/declarative/Element.hpp"
#include "platform/declarative/PaintList.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform::declarative {

/// A button and where it can be clicked. Hit areas are in the order of painting, which is also the
/// order of the Tab key.
struct HitArea {
    Rect rect; ///< the visible part of the label's frame
    ButtonSpec button;
};

/// An accessibility element, in reading order.
struct AccessibilityNode {
    AccessibilityDescription description;
    Rect frame;
    std::string buttonID; ///< of a button; else empty
};

/// The current effect of pointer and keyboard on the page.
struct Interaction {
    /// The button that is held down; drawn fainter.
    std::optional<std::string> pressed = std::nullopt;
    /// The button with the keyboard focus; drawn with a focus ring.
    std::optional<std::string> focused = std::nullopt;
};

/// A laid-out page.
struct PageLayout {
    PaintList paint;
    std::vector<HitArea> hitAreas;
    std::vector<AccessibilityNode> accessibility;
    std::vector<AnimatedTarget> animated;

    /// The button with that id; null when it is not on this page. Valid as long as this layout.
    [[nodiscard]] const HitArea* buttonWithID(std::string_view id) const;

    /// The ids of the buttons in the order of the Tab key.
    [[nodiscard]] std::vector<std::string> focusOrder() const;
};

/// The topmost area that contains the point; null when there is none. Valid as long as `areas`.
[[nodiscard]] const HitArea* hitAt(std::span<const HitArea> areas, Point point);

/// The opacity of a button's label while it is held down.
inline constexpr double pressedOpacity = 0.75;

/// Lays out the page, centred, in a window of that size, and lists how to paint it. Any thread that
/// the measurer may be used on.
[[nodiscard]] PageLayout layOut(const Element& page, Size size, const Measurer& measurer,
                                const Interaction& interaction = {});

} // namespace platform::declarative
