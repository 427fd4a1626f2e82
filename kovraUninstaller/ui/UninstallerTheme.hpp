#pragma once

#include "platform/declarative/Color.hpp"

namespace kovra {

/// The program's fixed palette, in sRGB: the page is light whatever the system's appearance.
struct UninstallerTheme {
    using Color = platform::declarative::Color;

    UninstallerTheme() = delete;

    static constexpr Color ink = Color::fromBytes(20, 22, 26);
    static constexpr Color brandGreen = Color::fromBytes(178, 224, 11);
    static constexpr Color danger = Color::fromBytes(255, 59, 48);
    static constexpr Color background = Color::fromBytes(247, 247, 247);

    static constexpr Color textPrimary = ink;
    static constexpr Color textSecondary = ink.withOpacity(0.72);
    static constexpr Color textMuted = ink.withOpacity(0.5);
    static constexpr Color textOnBrand = ink; ///< dark on the green, by choice
    static constexpr Color cardFill = ink.withOpacity(0.015);

    static constexpr Color linkUnderlineResting = ink.withOpacity(0.32);
    static constexpr Color weakUnderlineResting = ink.withOpacity(0.28);
};

} // namespace kovra
