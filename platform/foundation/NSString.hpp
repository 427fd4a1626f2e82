#pragma once

#include "platform/foundation/NSObject.hpp"

namespace platform::foundation {

class NSString : public NSObject {
  public:
    static constexpr UInteger utf8Encoding = 4;
    static constexpr UInteger utf16LittleEndianEncoding = 0x94000100;

    // clang-format off
    static NSString* alloc() { return ClassMethod<"NSString", "alloc", NSString*()>::send(); }
    NSString* initWithBytes(const void* bytes, UInteger length, UInteger encoding) { return InstanceMethod<"NSString", "initWithBytes:length:encoding:", NSString*(const void*, UInteger, UInteger)>::send(this, bytes, length, encoding); }

    [[nodiscard]] const char* utf8String() const { return InstanceMethod<"NSString", "UTF8String", const char*()>::send(this); }
    [[nodiscard]] UInteger lengthOfBytes(UInteger encoding) const { return InstanceMethod<"NSString", "lengthOfBytesUsingEncoding:", UInteger(UInteger)>::send(this, encoding); }
    [[nodiscard]] bool localizedCaseInsensitiveContainsString(NSString* part) const { return InstanceMethod<"NSString", "localizedCaseInsensitiveContainsString:", Bool(NSString*)>::send(this, part) != NO; }
    [[nodiscard]] NSString* lowercaseString() const { return InstanceMethod<"NSString", "lowercaseString", NSString*()>::send(this); }

    // clang-format on
};

} // namespace platform::foundation
