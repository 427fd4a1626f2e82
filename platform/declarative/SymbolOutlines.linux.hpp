#pragma once

#include "platform/declarative/Path.hpp"
#include "platform/declarative/Text.hpp"

#include <optional>
#include <string_view>

namespace platform::declarative {

/// A symbol as a path: GNUstep has no system symbols.
struct SymbolOutline {
    Path path;           ///< to be filled; the origin is the top left of its bounds
    TextMetrics metrics; ///< the size of its bounds, and the baseline
};

/// The outline of "exclamationmark.triangle.fill", "checkmark.circle.fill" or "arrow.up.right" at
/// that font; nothing for any other name. The weight affects the arrow only: the other two are
/// filled shapes.
[[nodiscard]] std::optional<SymbolOutline> symbolOutline(std::string_view name, const Font& font);

} // namespace platform::declarative
