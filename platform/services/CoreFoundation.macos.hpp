#pragma once

#include "platform/foundation/NSObject.hpp"

// Core Foundation's types and functions in use. Where the vendor's header is, the compiler holds
// these declarations against it.
#if __has_include(<CoreFoundation/CoreFoundation.h>)
#include <CoreFoundation/CoreFoundation.h>
#endif

extern "C" {
using CFArrayRef = const struct __CFArray*;
using CFDictionaryRef = const struct __CFDictionary*;
using CFStringRef = const struct __CFString*;
void CFRunLoopRun();
}

namespace platform {

/// What Core Foundation and its like call by a type of their own is a Foundation object too.
template <class Facade>
[[nodiscard]] Facade* toFacade(const void* reference) {
    return static_cast<Facade*>(const_cast<void*>(reference));
}

template <class Reference>
[[nodiscard]] Reference toReference(const foundation::NSObject* object) {
    return reinterpret_cast<Reference>(const_cast<foundation::NSObject*>(object));
}

} // namespace platform
