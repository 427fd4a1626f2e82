#include "platform/services/UnicodeCase.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

std::string lowercasedUnicode(std::string_view text) {
    const objc::AutoreleasePool pool;
    const foundation::NSString* string = foundation::toNSString(text);
    return string == nullptr ? std::string(text) : foundation::toString(string->lowercaseString());
}

} // namespace platform
