#pragma once

#include "platform/declarative/Animator.hpp"

namespace platform::appkit {

/// What the person has asked the system for at this moment. Main thread.
[[nodiscard]] declarative::MotionPreference motionPreference();

} // namespace platform::appkit
