#include "platform/services/TextCase.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

std::string lowercasedUnicode(std::string_view text) {
    const objc::AutoreleasePool pool;
    const foundation::NSString* string = foundation::toNSString(text);
    return string == nullptr ? std::string(text) : foundation::toString(string->lowercaseString());
}

bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part) {
    const objc::AutoreleasePool pool;
    const foundation::NSString* string = foundation::toNSString(text);
    foundation::NSString* sought = foundation::toNSString(part);
    return string != nullptr && sought != nullptr &&
           string->localizedCaseInsensitiveContainsString(sought);
}

} // namespace platform
