#pragma once

#include "platform/declarative/Color.hpp"
#include "platform/declarative/Geometry.hpp"

#include <optional>
#include <string>

namespace platform::declarative {

enum class FontWeight { light, regular, medium, semibold };

/// The system font at a size in points.
struct Font {
    double size = 13;
    FontWeight weight = FontWeight::regular;

    friend bool operator==(const Font&, const Font&) = default;
};

enum class HorizontalAlignment { leading, center };

/// A text in one style. It wraps at the offered width, is never truncated, and takes the height
/// that it needs.
struct Text {
    std::string string; ///< UTF-8
    Font font;
    Color color;
    std::optional<Color> underline = std::nullopt; ///< the underline's colour; none: not underlined
    /// Of the lines of a text that wraps.
    HorizontalAlignment alignment = HorizontalAlignment::leading;

    friend bool operator==(const Text&, const Text&) = default;
};

/// A picture that behaves like a letter: sized by the font, standing on the baseline.
struct Symbol {
    std::string name; ///< the system's name, such as "arrow.up.right"
    Font font;
    Color color;
    std::string accessibilityLabel; ///< empty: decorative, not spoken

    friend bool operator==(const Symbol&, const Symbol&) = default;
};

/// The size of a text or symbol, and its first baseline.
struct TextMetrics {
    Size size;
    double firstBaseline = 0; ///< from the top to the first line's baseline

    friend bool operator==(const TextMetrics&, const TextMetrics&) = default;
};

/// Measures texts and symbols with the fonts of the system.
class Measurer {
  public:
    Measurer() = default;
    Measurer(const Measurer&) = delete;
    Measurer& operator=(const Measurer&) = delete;
    virtual ~Measurer() = default;

    /// The size of the text when its lines may be `width` points wide; without a width it breaks
    /// only at line feeds. The result is as wide as the widest line, which is wider than `width`
    /// only when a single word is.
    [[nodiscard]] virtual TextMetrics measureText(const Text& text,
                                                  std::optional<double> width) const = 0;

    /// The size of a symbol and its baseline; all 0 for an unknown name.
    [[nodiscard]] virtual TextMetrics measureSymbol(const Symbol& symbol) const = 0;
};

} // namespace platform::declarative
