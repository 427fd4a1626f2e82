#pragma once

#include "platform/foundation/Conversions.hpp"
#include "platform/objc/AutoreleasePool.hpp"

namespace platform::foundation::testing {

/// A string that is never freed, as a constant of the system is.
inline NSString* constantString(const char* text) {
    const objc::AutoreleasePool pool;
    return objc::retain(toNSString(text)).release();
}

} // namespace platform::foundation::testing
