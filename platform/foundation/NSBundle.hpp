#pragma once

#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/NSString.hpp"

namespace platform::foundation {

class NSBundle : public NSObject {
  public:
    // clang-format off
    static NSBundle* mainBundle() { return ClassMethod<"NSBundle", "mainBundle", NSBundle*()>::send(); }

    [[nodiscard]] NSString* bundleIdentifier() const { return InstanceMethod<"NSBundle", "bundleIdentifier", NSString*()>::send(this); }
    [[nodiscard]] NSString* bundlePath() const { return InstanceMethod<"NSBundle", "bundlePath", NSString*()>::send(this); }
    [[nodiscard]] NSDictionary* infoDictionary() const { return InstanceMethod<"NSBundle", "infoDictionary", NSDictionary*()>::send(this); }
    [[nodiscard]] NSString* pathForResource(NSString* name, NSString* type) const { return InstanceMethod<"NSBundle", "pathForResource:ofType:", NSString*(NSString*, NSString*)>::send(this, name, type); }

    // clang-format on
};

} // namespace platform::foundation
