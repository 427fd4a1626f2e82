#pragma once

#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/NSException.hpp"
#include "platform/foundation/NSString.hpp"

#include <type_traits>

// The functions and constants of Foundation in use. In Objective-C++ the vendor's headers are read
// too: functions are then declared with the system's own classes, and the compiler holds them
// against those headers; a constant is held against them in place of being declared, since some are
// const there and some are not.

#if defined(__OBJC__)
#include <Foundation/Foundation.h>
#define PLATFORM_SYSTEM_STRING(name)                                                               \
    static_assert(std::is_same_v<std::remove_const_t<decltype(name)>, NSString*>)
#else
#define PLATFORM_SYSTEM_STRING(name) extern platform::foundation::NSString* const name
#endif

namespace platform::system {

#if defined(__OBJC__)
using Object = id;
using String = NSString*;
using Dictionary = NSDictionary<NSString*, id>*;
using Exception = NSException*;
#else
using Object = foundation::NSObject*;
using String = foundation::NSString*;
using Dictionary = foundation::NSDictionary*;
using Exception = foundation::NSException*;
#endif

} // namespace platform::system

extern "C" {
PLATFORM_SYSTEM_STRING(NSAppleScriptErrorMessage);
PLATFORM_SYSTEM_STRING(NSAppleScriptErrorNumber);
PLATFORM_SYSTEM_STRING(NSDefaultRunLoopMode);
platform::system::String NSHomeDirectory();
platform::system::String NSTemporaryDirectory();
void NSSetUncaughtExceptionHandler(void (*)(platform::system::Exception));
}
