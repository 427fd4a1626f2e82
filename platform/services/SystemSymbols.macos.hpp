#pragma once

#include "platform/foundation/NSObject.hpp"

#include <cstdint>
#include <type_traits>

// The types, constants and functions in use of the system's C interfaces: Core Foundation, Text
// Input Sources (of the Carbon framework) and the log. Where the vendor's headers are, the compiler
// holds these declarations against them.
#if __has_include(<CoreFoundation/CoreFoundation.h>)
#include <CoreFoundation/CoreFoundation.h>
#endif
#if __has_include(<Carbon/Carbon.h>)
#include <Carbon/Carbon.h>
#endif
#if __has_include(<os/log.h>)
#include <os/log.h>
static_assert(std::is_same_v<std::underlying_type_t<os_log_type_t>, std::uint8_t>);
#else
using os_log_type_t = std::uint8_t;
#endif

inline constexpr os_log_type_t osLogTypeError{0x10};
#if __has_include(<os/log.h>)
static_assert(osLogTypeError == OS_LOG_TYPE_ERROR);
#endif

extern "C" {
using CFArrayRef = const struct __CFArray*;
using CFDictionaryRef = const struct __CFDictionary*;
using CFStringRef = const struct __CFString*;
void CFRunLoopRun();

using TISInputSourceRef = struct __TISInputSource*;
extern const CFStringRef kTISPropertyBundleID;
extern const CFStringRef kTISPropertyInputSourceID;
TISInputSourceRef TISCopyCurrentKeyboardInputSource();
CFArrayRef TISCreateInputSourceList(CFDictionaryRef properties, unsigned char includeAllInstalled);
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);
std::int32_t TISSelectInputSource(TISInputSourceRef source);
std::int32_t TISDisableInputSource(TISInputSourceRef source);

// As the macros of the log's header call it.
using os_log_t = struct os_log_s*;
os_log_t os_log_create(const char* subsystem, const char* category);
bool os_log_type_enabled(os_log_t log, os_log_type_t type);
void _os_log_error_impl(void* dso, os_log_t log, os_log_type_t type, const char* format,
                        std::uint8_t* buffer, std::uint32_t size);
#if defined(__APPLE__) // g++ declares it with another type
extern struct mach_header __dso_handle;
#endif
}

namespace platform {

// Toll-free bridging: a reference of Core Foundation and the like is a Foundation object.

template <class Facade>
[[nodiscard]] Facade* toFacade(const void* reference) {
    return static_cast<Facade*>(const_cast<void*>(reference));
}

template <class Reference>
[[nodiscard]] Reference toReference(const foundation::NSObject* object) {
    return reinterpret_cast<Reference>(const_cast<foundation::NSObject*>(object));
}

} // namespace platform
