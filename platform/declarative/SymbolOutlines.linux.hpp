#pragma once

#include "platform/declarative/Path.hpp"
#include "platform/declarative/Text.hpp"

#include <optional>
#include <string_view>

namespace platform::declarative {

/// A symbol drawn by ourselves, for systems that have none.
struct SymbolOutline {
    Path path;           ///< filled; the origin is the top left of its box
    TextMetrics metrics; ///< the box around the ink and the baseline in it
};

/// The outline of "exclamationmark.triangle.fill", "checkmark.circle.fill" or "arrow.up.right" at
/// that font; nothing for any other name. The weight changes the arrow's stroke alone, since the
/// other two are filled shapes.
[[nodiscard]] std::optional<SymbolOutline> symbolOutline(std::string_view name, const Font& font);

} // namespace platform::declarative
