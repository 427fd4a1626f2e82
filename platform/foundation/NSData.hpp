#pragma once

#include "platform/foundation/NSObject.hpp"

namespace platform::foundation {

class NSData : public NSObject {
  public:
    // clang-format off
    static NSData* dataWithBytes(const void* bytes, UInteger length) { return ClassMethod<"NSData", "dataWithBytes:length:", NSData*(const void*, UInteger)>::send(bytes, length); }
    /// The bytes stay the caller's and must outlive the data.
    static NSData* dataWithBytesNoCopy(void* bytes, UInteger length) { return ClassMethod<"NSData", "dataWithBytesNoCopy:length:freeWhenDone:", NSData*(void*, UInteger, Bool)>::send(bytes, length, objc::toBool(false)); }

    [[nodiscard]] const void* bytes() const { return InstanceMethod<"NSData", "bytes", const void*()>::send(this); }
    [[nodiscard]] UInteger length() const { return InstanceMethod<"NSData", "length", UInteger()>::send(this); }

    // clang-format on
};

} // namespace platform::foundation
