#pragma once

#include "platform/foundation/NSObject.hpp"

#include <exception>

namespace platform {

/// Inside a catch clause or a terminate handler: the Objective-C object that was thrown; null when
/// the exception is another language's or there is none. Borrowed.
[[nodiscard]] foundation::NSObject* caughtObject() noexcept;

/// Has the handler, which does not return, called where an exception meets a function that may not
/// throw: an Objective-C object too, which `caughtObject` gives there. Once, main thread.
void setTerminateHandler(std::terminate_handler handler);

} // namespace platform
