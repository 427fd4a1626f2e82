#include "platform/appkit/SystemSymbol.hpp"

namespace platform::appkit {

std::optional<declarative::TextMetrics> systemSymbolMetrics(const declarative::Symbol&) {
    return std::nullopt;
}

bool drawSystemSymbol(const declarative::paint::DrawSymbol&) {
    return false;
}

} // namespace platform::appkit
