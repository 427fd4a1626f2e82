#pragma once

#include "platform/appkit/NSTextStorage.hpp"
#include "platform/declarative/Text.hpp"

#include <optional>

namespace platform::appkit {

/// The attributes of an attributed string: font, colour, underline and alignment. Autoreleased.
/// Main thread.
[[nodiscard]] NSDictionary* textAttributes(const declarative::Text& text);

/// A text laid out in lines by the system. Measuring and drawing both use it, so that their line
/// breaks agree. Main thread.
class TextLayout {
  public:
    /// `width` is the greatest width of a line, in points; without it lines break at line feeds
    /// only.
    TextLayout(const declarative::Text& text, std::optional<double> width);

    [[nodiscard]] declarative::TextMetrics metrics() const;

    /// Draws into the current graphics context, which must be flipped; `origin` is the top left of
    /// the area that the lines are aligned in, `width` wide.
    void draw(declarative::Point origin) const;

  private:
    objc::Retained<NSTextContainer> container_;
    objc::Retained<NSLayoutManager> manager_;
    objc::Retained<NSTextStorage> storage_;
};

/// Measures with the fonts and symbols that the painter draws. Main thread.
class SystemMeasurer : public declarative::Measurer {
  public:
    [[nodiscard]] declarative::TextMetrics measureText(const declarative::Text& text,
                                                       std::optional<double> width) const override;
    [[nodiscard]] declarative::TextMetrics
    measureSymbol(const declarative::Symbol& symbol) const override;
};

} // namespace platform::appkit
