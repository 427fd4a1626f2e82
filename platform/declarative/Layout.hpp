#pragma once

#include "platform/declarative/Element.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace platform::declarative {

/// The size that an element is offered; along an axis without one the element chooses freely.
struct Proposal {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;
};

/// An element with its size, and its children with their positions.
struct LayoutBox {
    LayoutBox() = default;

    /// Without children; its baseline is its bottom edge.
    LayoutBox(Element of, Size taken)
        : element(std::move(of)), size(taken), firstBaseline(taken.height) {}

    Element element;
    Size size;
    double firstBaseline = 0;        ///< from the top; the height when it contains no text
    std::optional<double> wrapWidth; ///< of a text: the width at which it was wrapped
    std::vector<LayoutBox> children;
    Point origin; ///< in its parent, which sets it
};

/// Measures the element and positions its content; each text is measured once.
[[nodiscard]] LayoutBox arrange(const Element& element, Proposal offered, const Measurer& measurer);

/// The origin of content of that size in a container, which it may overflow. `firstTextBaseline`
/// counts as the top.
[[nodiscard]] Point alignedOrigin(Size container, Size content, Alignment alignment);

// The arithmetic of layout, in points. It knows no elements.

/// The offset of content in a container, by lengths: `fraction` is 0 for the start, 0.5 for the
/// middle, 1 for the end. Negative when longer content is not at the start.
[[nodiscard]] double alignedOffset(double container, double content, double fraction);

/// What insets leave of an offered length; never negative; nothing when nothing is offered.
[[nodiscard]] std::optional<double> lengthWithin(std::optional<double> offered, double before,
                                                 double after);

/// What the children so far leave of an offered length; never negative; nothing when nothing is
/// offered.
[[nodiscard]] std::optional<double> lengthLeft(std::optional<double> offered, double taken);

/// The share of the rest of a stack that each of `count` flexible children is offered.
[[nodiscard]] std::optional<double> flexibleShare(std::optional<double> offered, double taken,
                                                  std::size_t count);

/// The offsets of consecutive children, and the length of all.
struct StackOffsets {
    std::vector<double> starts;
    double length;
};

[[nodiscard]] StackOffsets stackOffsets(std::span<const double> lengths, double spacing);

/// The top of each child in a row whose baselines are aligned, the common baseline, and the height
/// of the row. The child with the lowest baseline is at the top.
struct BaselineOffsets {
    std::vector<double> tops;
    double baseline;
    double height;
};

[[nodiscard]] BaselineOffsets baselineOffsets(std::span<const double> heights,
                                              std::span<const double> baselines);

} // namespace platform::declarative
