#pragma once

#include "platform/foundation/NSArray.hpp"
#include "platform/foundation/NSString.hpp"

namespace platform::foundation {

class NSException : public NSObject {
  public:
    // clang-format off
    [[nodiscard]] NSString* name() const { return InstanceMethod<"NSException", "name", NSString*()>::send(this); }
    [[nodiscard]] NSString* reason() const { return InstanceMethod<"NSException", "reason", NSString*()>::send(this); }
    [[nodiscard]] NSArray* callStackSymbols() const { return InstanceMethod<"NSException", "callStackSymbols", NSArray*()>::send(this); }

    // clang-format on
};

} // namespace platform::foundation
