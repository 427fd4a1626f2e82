#pragma once

#include "platform/declarative/Element.hpp"

namespace platform::declarative {

/// Where something of the size `content` stands in a container that it may well overflow. Away
/// from neighbours to share a baseline with, `firstTextBaseline` counts as the top.
[[nodiscard]] Point alignedOrigin(Size container, Size content, Alignment alignment);

} // namespace platform::declarative
