#include "platform/appkit/ReducedMotion.hpp"

#include "platform/appkit/NSWorkspace.hpp"

namespace platform::appkit {

declarative::MotionPreference motionPreference() {
    return NSWorkspace::sharedWorkspace()->shouldReduceMotion()
               ? declarative::MotionPreference::reduced
               : declarative::MotionPreference::full;
}

} // namespace platform::appkit
