#pragma once

#include "platform/declarative/Animation.hpp"
#include "platform/declarative/Path.hpp"
#include "platform/declarative/Text.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform::declarative {

enum class VerticalAlignment { top, center, bottom, firstTextBaseline };

struct Alignment {
    HorizontalAlignment horizontal = HorizontalAlignment::center;
    VerticalAlignment vertical = VerticalAlignment::center;

    friend bool operator==(const Alignment&, const Alignment&) = default;
};

/// A fixed size on one axis or both; an axis without one keeps the size of what is framed.
struct FrameSize {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;
};

enum class AccessibilityRole { staticText, button, image, progressIndicator };

/// How something is told to people who do not see it.
struct AccessibilityDescription {
    AccessibilityRole role;
    std::string label;
    std::optional<double> value = std::nullopt; ///< from 0 to 1, of a progress indicator

    friend bool operator==(const AccessibilityDescription&,
                           const AccessibilityDescription&) = default;
};

/// What makes an element a button.
struct ButtonSpec {
    std::string id;                 ///< unique on its page
    std::function<void()> action;   ///< called on the main thread
    std::string accessibilityTitle; ///< what is read out
    bool focusable = true;          ///< reached with the Tab key
    /// How its hover value moves; none: it has no hover.
    std::optional<EaseInOut> hoverFade = std::nullopt;
    Outline focusRing{.cornerRadius = 4}; ///< the shape around which focus is shown
};

/// A number on the page that does not jump when it changes. The page draws itself with
/// `PageValues::animated` of the same id.
struct AnimatedTarget {
    std::string id; ///< unique on its page
    double target;
    Curve curve;
};

struct ElementContent;

/// One value of a page: what is shown, and how it is arranged. Immutable and cheap to copy.
///
/// An element is offered a width and a height and answers with the size that it takes. What is
/// larger than its frame is not clipped and runs on; what comes later is painted on top.
class Element {
  public:
    /// Shows nothing and takes no room.
    Element();
    explicit Element(ElementContent content);

    [[nodiscard]] const ElementContent& content() const { return *content_; }

    /// Offers itself the frame's size and stands aligned in it.
    [[nodiscard]] Element frame(FrameSize size, Alignment alignment = {}) const;
    [[nodiscard]] Element padding(Insets insets) const;

    /// With another element behind or in front of it, which is offered its size.
    [[nodiscard]] Element background(Element behind, Alignment alignment = {}) const;
    [[nodiscard]] Element overlay(Element inFront, Alignment alignment = {}) const;
    [[nodiscard]] Element clipped(Outline outline) const;

    /// With the opacity of all that it paints multiplied by `factor`.
    [[nodiscard]] Element opacity(double factor) const;

    /// Read out as this one thing in place of whatever is inside it.
    [[nodiscard]] Element accessibility(AccessibilityDescription description) const;

    /// Declares that the number belongs to this element: it lives as long as the element is shown.
    [[nodiscard]] Element animating(AnimatedTarget target) const;

  private:
    std::shared_ptr<const ElementContent> content_;
};

[[nodiscard]] Element text(Text text);
[[nodiscard]] Element symbol(Symbol symbol);

/// A filled shape as large as it is offered; of no size where nothing is offered.
[[nodiscard]] Element shape(Outline outline, Color fill);
[[nodiscard]] Element rectangle(Color fill);

/// A picture among the resources, scaled to fill what it is offered. Shows nothing when there is
/// none of that name. An empty label makes it decoration.
[[nodiscard]] Element image(std::string name, std::string accessibilityLabel = {});

/// Takes what the stack that it stands in has left over, and no less than `minimum`.
[[nodiscard]] Element spacer(double minimum = 0);

struct VerticalStackOptions {
    HorizontalAlignment alignment = HorizontalAlignment::center;
    double spacing = 0;
};

struct HorizontalStackOptions {
    VerticalAlignment alignment = VerticalAlignment::center;
    double spacing = 0;
};

[[nodiscard]] Element verticalStack(VerticalStackOptions options, std::vector<Element> children);
[[nodiscard]] Element horizontalStack(HorizontalStackOptions options,
                                      std::vector<Element> children);

/// All children on top of each other, the last one uppermost; as large as the largest.
[[nodiscard]] Element layers(Alignment alignment, std::vector<Element> children);

/// A label that runs an action when it is pressed; the whole label can be pressed, and it has no
/// look of its own.
[[nodiscard]] Element button(ButtonSpec spec, Element label);

} // namespace platform::declarative
