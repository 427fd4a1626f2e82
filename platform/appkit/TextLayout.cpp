#include "platform/appkit/TextLayout.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/FontsAndSymbols.hpp"
#include "platform/appkit/NSColor.hpp"
#include "platform/appkit/NSParagraphStyle.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"

namespace platform::appkit {

namespace {

Integer toTextAlignment(declarative::HorizontalAlignment alignment) {
    switch (alignment) {
    case declarative::HorizontalAlignment::leading: return textAlignmentLeft;
    case declarative::HorizontalAlignment::center: return textAlignmentCenter;
    }
    return textAlignmentLeft;
}

// Larger than any layout, and small enough for exact fractions of a point.
constexpr double unlimited = 1.0e6;

// A text is drawn in exactly its measured width: rounding errors must not add a line break.
constexpr double slack = 0.01;

} // namespace

NSDictionary* textAttributes(const declarative::Text& text) {
    const auto style = objc::adopt(NSMutableParagraphStyle::alloc()->init());
    style->setAlignment(toTextAlignment(text.alignment));

    auto* attributes = NSMutableDictionary::dictionaryWithCapacity(5);
    attributes->setObject(systemFont(text.font), NSFontAttributeName);
    attributes->setObject(toNSColor(text.color), NSForegroundColorAttributeName);
    attributes->setObject(style.get(), NSParagraphStyleAttributeName);
    if (text.underline) {
        attributes->setObject(foundation::NSNumber::numberWithLongLong(underlineSingle),
                              NSUnderlineStyleAttributeName);
        attributes->setObject(toNSColor(*text.underline), NSUnderlineColorAttributeName);
    }
    return attributes;
}

TextLayout::TextLayout(const declarative::Text& text, std::optional<double> width)
    : container_(objc::adopt(
          NSTextContainer::alloc()->initWithSize({width ? *width + slack : unlimited, unlimited}))),
      manager_(objc::adopt(NSLayoutManager::alloc()->init())),
      storage_(objc::adopt(NSTextStorage::alloc()->initWithString(
          foundation::toNSString(text.string), textAttributes(text)))) {
    container_->setLineFragmentPadding(0);
    manager_->addTextContainer(container_.get());
    storage_->addLayoutManager(manager_.get());
}

declarative::TextMetrics TextLayout::metrics() const {
    const NSRange glyphs = manager_->glyphRangeForTextContainer(container_.get());
    const NSRect used = manager_->usedRectForTextContainer(container_.get());
    if (glyphs.length == 0) {
        return {.size = {0, used.size.height}, .firstBaseline = used.size.height};
    }
    return {.size = {used.size.width, used.size.height},
            .firstBaseline = manager_->locationForGlyphAtIndex(glyphs.location).y};
}

void TextLayout::draw(declarative::Point origin) const {
    manager_->drawGlyphs(manager_->glyphRangeForTextContainer(container_.get()), toNSPoint(origin));
}

declarative::TextMetrics SystemMeasurer::measureText(const declarative::Text& text,
                                                     std::optional<double> width) const {
    return TextLayout(text, width).metrics();
}

declarative::TextMetrics SystemMeasurer::measureSymbol(const declarative::Symbol& symbol) const {
    return systemSymbolMetrics(symbol);
}

} // namespace platform::appkit
