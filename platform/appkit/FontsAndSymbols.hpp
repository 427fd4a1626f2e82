#pragma once

#include "platform/appkit/NSFont.hpp"
#include "platform/declarative/PaintList.hpp"
#include "platform/declarative/Text.hpp"

#include <optional>

namespace platform::appkit {

/// The system's own typeface in that size and weight; elsewhere than on a Mac, Inter. Autoreleased.
/// Main thread.
[[nodiscard]] NSFont* systemFont(const declarative::Font& font);

// The symbols that the system itself draws. Where it has none of that name both functions say so,
// and the drawn outlines take their place. Main thread.

/// Nothing when the system has no such symbol.
[[nodiscard]] std::optional<declarative::TextMetrics>
systemSymbolMetrics(const declarative::Symbol& symbol);

/// Draws into the current graphics context, which must be flipped. False, with nothing drawn, when
/// the system has no such symbol.
[[nodiscard]] bool drawSystemSymbol(const declarative::paint::DrawSymbol& command);

} // namespace platform::appkit
