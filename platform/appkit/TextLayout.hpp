#pragma once

#include "platform/appkit/NSTextStorage.hpp"
#include "platform/declarative/Text.hpp"

#include <optional>

namespace platform::appkit {

/// Font, colour, underline and alignment of a text, as attributed strings take them. Autoreleased.
/// Main thread.
[[nodiscard]] NSDictionary* textAttributes(const declarative::Text& text);

/// A text with its lines broken and placed by the system. Measuring and drawing share it, so that
/// lines never break elsewhere than where they were measured. Main thread.
class TextLayout {
  public:
    /// `width` in points is how wide a line may be; without one, lines break at line feeds alone.
    TextLayout(const declarative::Text& text, std::optional<double> width);

    [[nodiscard]] declarative::TextMetrics metrics() const;

    /// Draws into the current graphics context, which must be flipped; `origin` is the top left of
    /// the room that the lines are aligned in.
    void draw(declarative::Point origin) const;

  private:
    objc::Retained<NSTextContainer> container_;
    objc::Retained<NSLayoutManager> manager_;
    objc::Retained<NSTextStorage> storage_;
};

/// Measures with the fonts and symbols that the painter paints. Main thread.
class SystemMeasurer : public declarative::Measurer {
  public:
    [[nodiscard]] declarative::TextMetrics measureText(const declarative::Text& text,
                                                       std::optional<double> width) const override;
    [[nodiscard]] declarative::TextMetrics
    measureSymbol(const declarative::Symbol& symbol) const override;
};

} // namespace platform::appkit
