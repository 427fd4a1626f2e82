#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/declarative/Text.hpp"

namespace platform::appkit {

/// Font, colour, underline and alignment of a text, as attributed strings take them. Autoreleased.
/// Main thread.
[[nodiscard]] NSDictionary* textAttributes(const declarative::Text& text);

} // namespace platform::appkit
