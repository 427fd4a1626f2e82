#pragma once

#include "platform/declarative/Element.hpp"

namespace kovra {

/// What the primary button, the "Checking…" placeholder and the progress bar have in common, so
/// that nothing moves when one takes the place of another.
struct ActionMetrics {
    ActionMetrics() = delete;

    static constexpr double width = 220; ///< points
    static constexpr double height = 42; ///< points
    static constexpr platform::declarative::Outline outline{
        .cornerRadius = 12, .corners = platform::declarative::CornerStyle::continuous};
    static constexpr platform::declarative::Font font{
        .size = 16, .weight = platform::declarative::FontWeight::regular};
};

} // namespace kovra
