#pragma once

#include "platform/declarative/Text.hpp"

#include <algorithm>
#include <string_view>

namespace platform::declarative::testing {

/// A measurer of fixed-width characters, so that tests can compute positions by hand. A character
/// is 0.4 (light), 0.5 (regular), 0.55 (medium) or 0.56 (semibold) of the font size wide; a line is
/// 1.2 of it high, with the baseline at 0.9. A symbol is as wide and as high as the font size.
class GridMeasurer : public Measurer {
  public:
    static double advance(const Font& font) {
        switch (font.weight) {
        case FontWeight::light: return font.size * 0.4;
        case FontWeight::regular: return font.size * 0.5;
        case FontWeight::medium: return font.size * 0.55;
        case FontWeight::semibold: return font.size * 0.56;
        }
        return 0;
    }

    [[nodiscard]] TextMetrics measureText(const Text& text,
                                          std::optional<double> width) const override {
        const double each = advance(text.font);
        double widest = 0;
        int lines = 1;
        double line = 0;
        std::string_view rest = text.string;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(' '), rest.size());
            const double word = each * static_cast<double>(characters(rest.substr(0, end)));
            const double spaced = line > 0 ? line + each + word : word;
            const bool fits = line == 0 || !width || spaced <= *width;
            lines += fits ? 0 : 1;
            line = fits ? spaced : word;
            widest = std::max(widest, line);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        return {{widest, 1.2 * text.font.size * lines}, 0.9 * text.font.size};
    }

    [[nodiscard]] TextMetrics measureSymbol(const Symbol& symbol) const override {
        return {{symbol.font.size, symbol.font.size}, 0.9 * symbol.font.size};
    }

  private:
    static std::ptrdiff_t characters(std::string_view utf8) {
        return std::ranges::count_if(
            utf8, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
    }
};

} // namespace platform::declarative::testing
