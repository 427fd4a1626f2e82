#pragma once

#include "platform/declarative/Text.hpp"

namespace platform::appkit {

/// Measures with the fonts and symbols that the painter paints. Main thread.
class SystemMeasurer : public declarative::Measurer {
  public:
    [[nodiscard]] declarative::TextMetrics measureText(const declarative::Text& text,
                                                       std::optional<double> width) const override;
    [[nodiscard]] declarative::TextMetrics
    measureSymbol(const declarative::Symbol& symbol) const override;
};

} // namespace platform::appkit
