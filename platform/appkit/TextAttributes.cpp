#include "platform/appkit/TextAttributes.hpp"

#include "platform/appkit/ColorConversion.hpp"
#include "platform/appkit/NSParagraphStyle.hpp"
#include "platform/appkit/SystemFont.hpp"
#include "platform/foundation/NSNumber.hpp"

extern "C" {
extern platform::appkit::NSString* const NSFontAttributeName;
extern platform::appkit::NSString* const NSForegroundColorAttributeName;
extern platform::appkit::NSString* const NSParagraphStyleAttributeName;
extern platform::appkit::NSString* const NSUnderlineColorAttributeName;
extern platform::appkit::NSString* const NSUnderlineStyleAttributeName;
}

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
        constexpr long long single = 1;
        attributes->setObject(foundation::NSNumber::numberWithLongLong(single),
                              NSUnderlineStyleAttributeName);
        attributes->setObject(toNSColor(*text.underline), NSUnderlineColorAttributeName);
    }
    return attributes;
}

} // namespace platform::appkit
