#include "platform/appkit/FontsAndSymbols.hpp"

#include "platform/appkit/CoreGraphics.macos.hpp"
#include "platform/appkit/NSColor.hpp"
#include "platform/appkit/NSGraphicsContext.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/appkit/NSImageSymbolConfiguration.hpp"
#include "platform/foundation/Conversions.hpp"

namespace platform::appkit {

namespace {

// The values of AppKit's NSFontWeight constants.
constexpr CGFloat systemFontWeight(declarative::FontWeight weight) {
    switch (weight) {
    case declarative::FontWeight::light: return -0.4;
    case declarative::FontWeight::regular: return 0;
    case declarative::FontWeight::medium: return 0.23;
    case declarative::FontWeight::semibold: return 0.3;
    }
    return 0;
}

NSImage* symbolImage(const declarative::Symbol& symbol) {
    NSImage* plain = NSImage::systemSymbol(foundation::toNSString(symbol.name), nullptr);
    if (plain == nullptr) {
        return nullptr;
    }
    auto* sized = NSImageSymbolConfiguration::withPointSize(symbol.font.size,
                                                            systemFontWeight(symbol.font.weight));
    return plain->withSymbolConfiguration(
        sized->applying(NSImageSymbolConfiguration::preferringMonochrome()));
}

} // namespace

NSFont* systemFont(const declarative::Font& font) {
    return NSFont::systemFontOfSize(font.size, systemFontWeight(font.weight));
}

// A symbol is centred vertically on half the cap height of the font.
declarative::TextMetrics systemSymbolMetrics(const declarative::Symbol& symbol) {
    const NSImage* image = symbolImage(symbol);
    if (image == nullptr) {
        return {};
    }
    const NSSize size = image->size();
    return {.size = {size.width, size.height},
            .firstBaseline = size.height / 2 + systemFont(symbol.font)->capHeight() / 2};
}

// The image is used as a mask: drawn into a transparency layer, then filled with the colour by the
// blend mode "source in". Core Graphics fills it, since AppKit's fills may set another blend mode.
void drawSystemSymbol(const declarative::paint::DrawSymbol& command) {
    NSImage* image = symbolImage(command.symbol);
    if (image == nullptr) {
        return;
    }
    const NSRect rect = toNSRect(command.rect);
    NSGraphicsContext::saveGraphicsState();
    auto* context = static_cast<CGContextRef>(NSGraphicsContext::currentContext()->cgContext());
    CGContextBeginTransparencyLayer(context, nullptr);
    image->draw(rect, {}, NSImage::compositeSourceOver, 1, true, nullptr);
    CGContextSetBlendMode(context, blendModeSourceIn);
    toNSColor(command.symbol.color)->set();
    const auto& [origin, size] = rect;
    CGContextFillRect(context, {{origin.x, origin.y}, {size.width, size.height}});
    CGContextEndTransparencyLayer(context);
    NSGraphicsContext::restoreGraphicsState();
}

} // namespace platform::appkit
