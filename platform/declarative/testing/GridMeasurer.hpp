#pragma once

#include "platform/declarative/Text.hpp"

#include <algorithm>
#include <string_view>

namespace platform::declarative::testing {

/// Measures as if every character were as wide as its weight says, so that places can be worked
/// out by hand: light 0.4, regular 0.5, medium 0.55 and semibold 0.56 of the font's size. A line is
/// 1.2 of it high, its baseline 0.9 of it from the top.
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

  private:
    static std::ptrdiff_t characters(std::string_view utf8) {
        return std::ranges::count_if(
            utf8, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
    }
};

} // namespace platform::declarative::testing
