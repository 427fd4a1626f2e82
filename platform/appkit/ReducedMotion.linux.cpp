#include "platform/appkit/ReducedMotion.hpp"

namespace platform::appkit {

// GNUstep has no such setting.
declarative::MotionPreference motionPreference() {
    return declarative::MotionPreference::full;
}

} // namespace platform::appkit
