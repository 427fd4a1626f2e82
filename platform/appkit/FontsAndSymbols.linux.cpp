#include "platform/appkit/FontsAndSymbols.hpp"

#include "platform/appkit/NSColor.hpp"
#include "platform/appkit/Painter.hpp"
#include "platform/declarative/SymbolOutlines.linux.hpp"
#include "platform/foundation/Conversions.hpp"

#include <stdexcept>
#include <string>

namespace platform::appkit {

namespace {

const char* faceOf(declarative::FontWeight weight) {
    switch (weight) {
    case declarative::FontWeight::light: return "Inter-Light";
    case declarative::FontWeight::regular: return "Inter-Regular";
    case declarative::FontWeight::medium: return "Inter-Medium";
    case declarative::FontWeight::semibold: return "Inter-SemiBold";
    }
    return "";
}

} // namespace

NSFont* systemFont(const declarative::Font& font) {
    const char* face = faceOf(font.weight);
    NSFont* found = NSFont::fontWithName(foundation::toNSString(face), font.size);
    if (found == nullptr) {
        throw std::runtime_error("The font " + std::string(face) + " is not installed.");
    }
    return found;
}

declarative::TextMetrics systemSymbolMetrics(const declarative::Symbol& symbol) {
    const auto outline = declarative::symbolOutline(symbol.name, symbol.font);
    return outline ? outline->metrics : declarative::TextMetrics{};
}

void drawSystemSymbol(const declarative::paint::DrawSymbol& command) {
    const auto outline = declarative::symbolOutline(command.symbol.name, command.symbol.font);
    if (outline) {
        toNSColor(command.symbol.color)->set();
        toNSBezierPath(outline->path.transformed(1, {command.rect.x, command.rect.y}))->fill();
    }
}

} // namespace platform::appkit
