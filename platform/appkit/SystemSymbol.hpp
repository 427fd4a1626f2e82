#pragma once

#include "platform/declarative/PaintList.hpp"

#include <optional>

namespace platform::appkit {

// The symbols that the system itself draws. Where it has none of that name both functions say so,
// and the drawn outlines take their place. Main thread.

/// Nothing when the system has no such symbol.
[[nodiscard]] std::optional<declarative::TextMetrics>
systemSymbolMetrics(const declarative::Symbol& symbol);

/// Draws into the current graphics context, which must be flipped. False, with nothing drawn, when
/// the system has no such symbol.
[[nodiscard]] bool drawSystemSymbol(const declarative::paint::DrawSymbol& command);

} // namespace platform::appkit
