#pragma once

#include "platform/declarative/ElementContent.hpp"

namespace platform::declarative {

/// Whether the element takes along `axis` whatever it is offered, so that a stack offers it what
/// the others leave.
[[nodiscard]] bool isFlexible(const Element& element, Axis axis);

} // namespace platform::declarative
