#pragma once

#include "platform/foundation/NSObject.hpp"

namespace platform::foundation {

class NSDate : public NSObject {
  public:
    // clang-format off
    static NSDate* dateWithTimeIntervalSinceReferenceDate(double seconds) { return ClassMethod<"NSDate", "dateWithTimeIntervalSinceReferenceDate:", NSDate*(double)>::send(seconds); }

    [[nodiscard]] double timeIntervalSinceReferenceDate() const { return InstanceMethod<"NSDate", "timeIntervalSinceReferenceDate", double()>::send(this); }

    // clang-format on
};

} // namespace platform::foundation
