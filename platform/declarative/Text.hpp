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

enum class HorizontalAlignment { leading, center, trailing };

/// A text in one style. It wraps at the width that it is offered, is never truncated and grows to
/// the height that it needs.
struct Text {
    std::string string; ///< UTF-8
    Font font;
    Color color;
    std::optional<Color> underline = std::nullopt; ///< the underline's colour; none: not underlined
    /// Of its lines among each other.
    HorizontalAlignment alignment = HorizontalAlignment::leading;

    friend bool operator==(const Text&, const Text&) = default;
};

/// A small picture that behaves like a letter: sized by the font, standing on the baseline.
struct Symbol {
    std::string name; ///< the system's name of it, such as "arrow.up.right"
    Font font;
    Color color;
    std::string accessibilityLabel; ///< empty: decoration, which is not read out

    friend bool operator==(const Symbol&, const Symbol&) = default;
};

/// How much room something takes that stands on a baseline.
struct TextMetrics {
    Size size;
    double firstBaseline = 0; ///< from the top to the first line's baseline

    friend bool operator==(const TextMetrics&, const TextMetrics&) = default;
};

/// Measures with the fonts of the system that paints.
class Measurer {
  public:
    Measurer() = default;
    Measurer(const Measurer&) = delete;
    Measurer& operator=(const Measurer&) = delete;
    virtual ~Measurer() = default;

    /// The room that the text takes when its lines may be `width` points wide; without a width it
    /// breaks only at line feeds. The result is as wide as its widest line, which is wider than
    /// `width` only when a single word is.
    [[nodiscard]] virtual TextMetrics measureText(const Text& text,
                                                  std::optional<double> width) const = 0;

    /// The room that a symbol takes. The default is that of the drawn outlines (`symbolOutline`);
    /// a system that has symbols of its own answers for those.
    [[nodiscard]] virtual TextMetrics measureSymbol(const Symbol& symbol) const;
};

} // namespace platform::declarative
