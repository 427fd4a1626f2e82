#pragma once

#include "platform/declarative/Element.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace platform::declarative {

/// The size that an element is offered; an axis without one leaves the choice to the element.
struct Proposal {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;
};

/// An element with the size that it took and its children's places. Painting reads it.
struct LayoutBox {
    LayoutBox() = default;

    /// Without children; its baseline is its lower edge.
    LayoutBox(Element of, Size taken)
        : element(std::move(of)), size(taken), firstBaseline(taken.height) {}

    Element element;
    Size size;
    double firstBaseline = 0;        ///< from its top; its height when it holds no text
    std::optional<double> wrapWidth; ///< of a text: the width at which its lines were broken
    std::vector<LayoutBox> children;
    Point origin; ///< in the parent; set by the parent
};

/// Measures the element and places all that is inside it; each text is measured once.
[[nodiscard]] LayoutBox arrange(const Element& element, Proposal offered, const Measurer& measurer);

/// Where something of the size `content` stands in a container that it may well overflow. Away
/// from neighbours to share a baseline with, `firstTextBaseline` counts as the top.
[[nodiscard]] Point alignedOrigin(Size container, Size content, Alignment alignment);

// The arithmetic of layout: lengths in, lengths out. Knows no elements. All in points.

/// Where something of length `content` begins in something of length `container`: 0 at its start,
/// 1 at its end, 0.5 in its middle. Negative when the content is longer and not at the start.
[[nodiscard]] double alignedOffset(double container, double content, double fraction);

/// What `insets` leave of an offered length; never negative, and nothing when nothing is offered.
[[nodiscard]] std::optional<double> lengthWithin(std::optional<double> offered, double before,
                                                 double after);

/// What is left of an offered length for the next child of a stack, after `taken` by others;
/// never negative, and nothing when nothing is offered.
[[nodiscard]] std::optional<double> lengthLeft(std::optional<double> offered, double taken);

/// The part of a stack's rest that each of `count` flexible children is offered.
[[nodiscard]] std::optional<double> flexibleShare(std::optional<double> offered, double taken,
                                                  std::size_t count);

/// Where children of these lengths begin, one after the other, and where the last one ends.
struct StackOffsets {
    std::vector<double> starts;
    double length;
};

[[nodiscard]] StackOffsets stackOffsets(std::span<const double> lengths, double spacing);

/// How far from the top each child stands so that all baselines meet on one line, and how high
/// the row then is. The child with the lowest baseline stands at the top.
struct BaselineOffsets {
    std::vector<double> tops;
    double baseline;
    double height;
};

[[nodiscard]] BaselineOffsets baselineOffsets(std::span<const double> heights,
                                              std::span<const double> baselines);

} // namespace platform::declarative
