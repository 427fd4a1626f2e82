#pragma once

#include "platform/declarative/Curves.hpp"
#include "platform/declarative/Text.hpp"

namespace kovra {

/// What the two text links have in common.
struct LinkStyle {
    LinkStyle() = delete;

    static constexpr platform::declarative::Font font{
        .size = 13, .weight = platform::declarative::FontWeight::light};
    static constexpr platform::declarative::EaseInOut hoverFade{.duration = 0.12}; ///< seconds
};

} // namespace kovra
