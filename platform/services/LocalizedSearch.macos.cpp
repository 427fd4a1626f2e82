#include "platform/services/LocalizedSearch.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform {

bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part) {
    const objc::AutoreleasePool pool;
    const foundation::NSString* string = foundation::toNSString(text);
    foundation::NSString* sought = foundation::toNSString(part);
    return string != nullptr && sought != nullptr &&
           string->localizedCaseInsensitiveContainsString(sought);
}

} // namespace platform
