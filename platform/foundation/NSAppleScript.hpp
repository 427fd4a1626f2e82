#pragma once

#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/NSString.hpp"

namespace platform::foundation {

class NSAppleScript : public NSObject {
  public:
    // clang-format off
    static NSAppleScript* alloc() { return ClassMethod<"NSAppleScript", "alloc", NSAppleScript*()>::send(); }
    NSAppleScript* initWithSource(NSString* source) { return InstanceMethod<"NSAppleScript", "initWithSource:", NSAppleScript*(NSString*)>::send(this, source); }

    /// Null, and the dictionary filled, when the script fails.
    NSObject* executeAndReturnError(NSDictionary** error) { return InstanceMethod<"NSAppleScript", "executeAndReturnError:", NSObject*(NSDictionary**)>::send(this, error); }

    // clang-format on
};

} // namespace platform::foundation
