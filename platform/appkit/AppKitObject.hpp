#pragma once

#include "platform/foundation/NSArray.hpp"
#include "platform/foundation/NSData.hpp"
#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/NSObject.hpp"
#include "platform/foundation/NSRange.hpp"
#include "platform/foundation/NSString.hpp"

// Facades of the AppKit classes in use, used methods only. As with Foundation, a pointer to one is
// the object. All of AppKit is for the main thread.

namespace platform::appkit {

using foundation::Bool;
using foundation::ClassMethod;
using foundation::InstanceMethod;
using foundation::Integer;
using foundation::NSArray;
using foundation::NSData;
using foundation::NSDictionary;
using foundation::NSMutableDictionary;
using foundation::NSObject;
using foundation::NSRange;
using foundation::NSString;
using foundation::UInteger;

/// Whether the object's class has that method: GNUstep lacks some of AppKit's.
template <objc::FixedString Selector>
[[nodiscard]] bool responds(const NSObject* object) {
    return object->respondsToSelector(objc::selector<Selector>());
}

} // namespace platform::appkit
