#pragma once

#include "platform/foundation/NSObject.hpp"

namespace platform::foundation {

class NSNumber : public NSObject {
  public:
    // clang-format off
    static NSNumber* numberWithBool(bool value) { return ClassMethod<"NSNumber", "numberWithBool:", NSNumber*(Bool)>::send(objc::toBool(value)); }
    static NSNumber* numberWithLongLong(long long value) { return ClassMethod<"NSNumber", "numberWithLongLong:", NSNumber*(long long)>::send(value); }
    static NSNumber* numberWithUnsignedLongLong(unsigned long long value) { return ClassMethod<"NSNumber", "numberWithUnsignedLongLong:", NSNumber*(unsigned long long)>::send(value); }
    static NSNumber* numberWithDouble(double value) { return ClassMethod<"NSNumber", "numberWithDouble:", NSNumber*(double)>::send(value); }

    [[nodiscard]] const char* objCType() const { return InstanceMethod<"NSNumber", "objCType", const char*()>::send(this); }
    [[nodiscard]] long long longLongValue() const { return InstanceMethod<"NSNumber", "longLongValue", long long()>::send(this); }
    [[nodiscard]] unsigned long long unsignedLongLongValue() const { return InstanceMethod<"NSNumber", "unsignedLongLongValue", unsigned long long()>::send(this); }
    [[nodiscard]] double doubleValue() const { return InstanceMethod<"NSNumber", "doubleValue", double()>::send(this); }

    // clang-format on
};

} // namespace platform::foundation
