#pragma once

#include "platform/foundation/NSObject.hpp"

namespace platform {

/// Inside a catch clause or a terminate handler: the Objective-C object that was thrown; null when
/// the exception is another language's or there is none. Borrowed.
[[nodiscard]] foundation::NSObject* caughtObject() noexcept;

} // namespace platform
