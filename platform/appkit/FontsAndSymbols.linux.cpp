#include "platform/appkit/FontsAndSymbols.hpp"

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

std::optional<declarative::TextMetrics> systemSymbolMetrics(const declarative::Symbol&) {
    return std::nullopt;
}

bool drawSystemSymbol(const declarative::paint::DrawSymbol&) {
    return false;
}

} // namespace platform::appkit
