#pragma once

#include "platform/appkit/NSLayoutManager.hpp"

namespace platform::appkit {

class NSTextStorage : public NSObject {
  public:
    // clang-format off
    static NSTextStorage* alloc() { return ClassMethod<"NSTextStorage", "alloc", NSTextStorage*()>::send(); }

    NSTextStorage* initWithString(NSString* string, NSDictionary* attributes) { return InstanceMethod<"NSTextStorage", "initWithString:attributes:", NSTextStorage*(NSString*, NSDictionary*)>::send(this, string, attributes); }
    void addLayoutManager(NSLayoutManager* manager) { InstanceMethod<"NSTextStorage", "addLayoutManager:", void(NSLayoutManager*)>::send(this, manager); }

    // clang-format on
};

} // namespace platform::appkit
