#include "platform/appkit/SystemMeasurer.hpp"

#include "platform/appkit/SystemSymbol.hpp"
#include "platform/appkit/TextLayout.hpp"

namespace platform::appkit {

declarative::TextMetrics SystemMeasurer::measureText(const declarative::Text& text,
                                                     std::optional<double> width) const {
    return TextLayout(text, width).metrics();
}

declarative::TextMetrics SystemMeasurer::measureSymbol(const declarative::Symbol& symbol) const {
    const auto own = systemSymbolMetrics(symbol);
    return own ? *own : Measurer::measureSymbol(symbol);
}

} // namespace platform::appkit
