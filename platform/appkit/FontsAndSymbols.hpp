#pragma once

#include "platform/appkit/NSFont.hpp"
#include "platform/declarative/PaintList.hpp"
#include "platform/declarative/Text.hpp"

namespace platform::appkit {

/// The system font in that size and weight; on Linux, Inter. Autoreleased. Main thread.
[[nodiscard]] NSFont* systemFont(const declarative::Font& font);

// Symbols: the Mac's own, and drawn outlines on Linux, whose toolkit has none. Main thread.

/// The size of the symbol and its baseline; all 0 for an unknown name.
[[nodiscard]] declarative::TextMetrics systemSymbolMetrics(const declarative::Symbol& symbol);

/// Draws into the current graphics context, which must be flipped; nothing for an unknown name.
void drawSystemSymbol(const declarative::paint::DrawSymbol& command);

} // namespace platform::appkit
