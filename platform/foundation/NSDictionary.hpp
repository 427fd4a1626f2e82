#pragma once

#include "platform/foundation/NSArray.hpp"

namespace platform::foundation {

class NSDictionary : public NSObject {
  public:
    // clang-format off
    [[nodiscard]] NSArray* allKeys() const { return InstanceMethod<"NSDictionary", "allKeys", NSArray*()>::send(this); }
    [[nodiscard]] NSObject* objectForKey(NSObject* key) const { return InstanceMethod<"NSDictionary", "objectForKey:", NSObject*(NSObject*)>::send(this, key); }

    // clang-format on
};

class NSMutableDictionary : public NSDictionary {
  public:
    // clang-format off
    static NSMutableDictionary* dictionaryWithCapacity(UInteger capacity) { return ClassMethod<"NSMutableDictionary", "dictionaryWithCapacity:", NSMutableDictionary*(UInteger)>::send(capacity); }

    void setObject(NSObject* value, NSObject* key) { InstanceMethod<"NSMutableDictionary", "setObject:forKey:", void(NSObject*, NSObject*)>::send(this, value, key); }

    // clang-format on
};

} // namespace platform::foundation
