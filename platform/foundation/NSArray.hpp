#pragma once

#include "platform/foundation/NSObject.hpp"

namespace platform::foundation {

class NSArray : public NSObject {
  public:
    // clang-format off
    static NSArray* arrayWithObject(NSObject* object) { return ClassMethod<"NSArray", "arrayWithObject:", NSArray*(NSObject*)>::send(object); }

    [[nodiscard]] UInteger count() const { return InstanceMethod<"NSArray", "count", UInteger()>::send(this); }
    [[nodiscard]] NSObject* objectAtIndex(UInteger index) const { return InstanceMethod<"NSArray", "objectAtIndex:", NSObject*(UInteger)>::send(this, index); }

    // clang-format on
};

class NSMutableArray : public NSArray {
  public:
    // clang-format off
    static NSMutableArray* arrayWithCapacity(UInteger capacity) { return ClassMethod<"NSMutableArray", "arrayWithCapacity:", NSMutableArray*(UInteger)>::send(capacity); }

    void addObject(NSObject* object) { InstanceMethod<"NSMutableArray", "addObject:", void(NSObject*)>::send(this, object); }

    // clang-format on
};

} // namespace platform::foundation
