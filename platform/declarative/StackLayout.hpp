#pragma once

#include "platform/declarative/ElementContent.hpp"
#include "platform/declarative/LayoutBox.hpp"

namespace platform::declarative {

/// Arranges the children of a stack: first those of a length of their own, in order, each offered
/// what is left; then the flexible ones, which share the rest evenly.
[[nodiscard]] LayoutBox arrangeStack(const Element& element, const content::Stack& stack,
                                     Proposal offered, const Measurer& measurer);

} // namespace platform::declarative
