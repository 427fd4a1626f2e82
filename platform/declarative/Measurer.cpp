#include "platform/declarative/SymbolOutlines.linux.hpp"
#include "platform/declarative/Text.hpp"

namespace platform::declarative {

TextMetrics Measurer::measureSymbol(const Symbol& symbol) const {
    const std::optional<SymbolOutline> outline = symbolOutline(symbol.name, symbol.font);
    return outline ? outline->metrics : TextMetrics{};
}

} // namespace platform::declarative
