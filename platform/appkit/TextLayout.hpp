#pragma once

#include "platform/appkit/NSTextStorage.hpp"
#include "platform/declarative/Text.hpp"

#include <optional>

namespace platform::appkit {

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

} // namespace platform::appkit
