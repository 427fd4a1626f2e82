#pragma once

#include "platform/declarative/Element.hpp"

#include <optional>
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

} // namespace platform::declarative
