#include "platform/appkit/SystemSymbol.hpp"

#include "platform/appkit/ColorConversion.hpp"
#include "platform/appkit/CoreGraphics.macos.hpp"
#include "platform/appkit/NSGraphicsContext.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/appkit/NSImageSymbolConfiguration.hpp"
#include "platform/appkit/SystemFont.hpp"
#include "platform/appkit/SystemFontWeight.macos.hpp"
#include "platform/foundation/Conversions.hpp"

namespace platform::appkit {

namespace {

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

// Symbols are drawn about the middle of the capital letters beside them.
std::optional<declarative::TextMetrics> systemSymbolMetrics(const declarative::Symbol& symbol) {
    const NSImage* image = symbolImage(symbol);
    if (image == nullptr) {
        return std::nullopt;
    }
    const NSSize size = image->size();
    return declarative::TextMetrics{.size = {size.width, size.height},
                                    .firstBaseline =
                                        size.height / 2 + systemFont(symbol.font)->capHeight() / 2};
}

// The image is a stencil: drawn into a layer of its own, then coloured where it is opaque. Filled
// is by the drawing system itself, since what AppKit fills need not follow its blend mode.
bool drawSystemSymbol(const declarative::paint::DrawSymbol& command) {
    NSImage* image = symbolImage(command.symbol);
    if (image == nullptr) {
        return false;
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
    return true;
}

} // namespace platform::appkit
