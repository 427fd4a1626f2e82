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

enum class VerticalAlignment { top, center, firstTextBaseline };

struct Alignment {
    HorizontalAlignment horizontal = HorizontalAlignment::center;
    VerticalAlignment vertical = VerticalAlignment::center;

    friend bool operator==(const Alignment&, const Alignment&) = default;
};

/// A fixed size along one axis or both; along the other the frame has the size of its content.
struct FrameSize {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;
};

enum class AccessibilityRole { staticText, button, image, progressIndicator };

/// What VoiceOver says of something.
struct AccessibilityDescription {
    AccessibilityRole role;
    std::string label;
    std::optional<double> value = std::nullopt; ///< of a progress indicator, from 0 to 1

    friend bool operator==(const AccessibilityDescription&,
                           const AccessibilityDescription&) = default;
};

/// What makes an element a button.
struct ButtonSpec {
    std::string id;                 ///< unique on its page
    std::function<void()> action;   ///< called on the main thread
    std::string accessibilityTitle; ///< spoken by VoiceOver
    /// How its hover value moves; none: no hover effect.
    std::optional<EaseInOut> hoverFade = std::nullopt;
    Outline focusRing{.cornerRadius = 4}; ///< the outline of the focus ring
};

/// A number on the page that moves to its target instead of jumping. The page reads its current
/// value from `PageValues::animated` with the same id.
struct AnimatedTarget {
    std::string id; ///< unique on its page
    double target;
    Curve curve;
};

struct ElementContent;

/// A part of a page: what is shown, and how it is arranged. Immutable and cheap to copy.
///
/// An element is offered a size and chooses its own. Content larger than its frame overflows
/// without being clipped; later elements are painted on top of earlier ones.
class Element {
  public:
    /// Shows nothing and has size 0.
    Element();
    explicit Element(ElementContent content);

    [[nodiscard]] const ElementContent& content() const { return *content_; }

    /// In a frame, whose size it is offered and in which it is aligned.
    [[nodiscard]] Element frame(FrameSize size, Alignment alignment = {}) const;
    [[nodiscard]] Element padding(Insets insets) const;

    /// With another element behind it, which is offered its size and centred.
    [[nodiscard]] Element background(Element behind) const;
    [[nodiscard]] Element clipped(Outline outline) const;

    /// Spoken as this, in place of its content.
    [[nodiscard]] Element accessibility(AccessibilityDescription description) const;

    /// Owns the animated number, which lives as long as the element is on the page.
    [[nodiscard]] Element animating(AnimatedTarget target) const;

  private:
    std::shared_ptr<const ElementContent> content_;
};

[[nodiscard]] Element text(Text text);
[[nodiscard]] Element symbol(Symbol symbol);

/// A filled rectangle of the offered size; of size 0 along an axis where none is offered.
[[nodiscard]] Element rectangle(Color fill);

/// The resource image of that name, scaled to fill the offered size; nothing when there is none.
/// Without a label it is decorative, not spoken.
[[nodiscard]] Element image(std::string name, std::string accessibilityLabel = {});

/// Takes the space that its stack has left, but at least `minimum` points.
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

/// All children on top of each other, the last one topmost; as large as the largest.
[[nodiscard]] Element layers(Alignment alignment, std::vector<Element> children);

/// A label that runs an action when it is clicked anywhere. It draws nothing but the label.
[[nodiscard]] Element button(ButtonSpec spec, Element label);

} // namespace platform::declarative
