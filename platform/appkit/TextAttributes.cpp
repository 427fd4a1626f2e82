#include "platform/appkit/TextAttributes.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/ColorConversion.hpp"
#include "platform/appkit/NSParagraphStyle.hpp"
#include "platform/appkit/SystemFont.hpp"
#include "platform/foundation/NSNumber.hpp"

namespace platform::appkit {

namespace {

Integer toTextAlignment(declarative::HorizontalAlignment alignment) {
    switch (alignment) {
    case declarative::HorizontalAlignment::leading: return textAlignmentLeft;
    case declarative::HorizontalAlignment::center: return textAlignmentCenter;
    case declarative::HorizontalAlignment::trailing: return textAlignmentRight;
    }
    return textAlignmentLeft;
}

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

} // namespace platform::appkit
