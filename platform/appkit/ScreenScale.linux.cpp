#include "platform/appkit/ScreenScale.hpp"

namespace platform::appkit {

// GNUstep tells them in pixels, and has a person say how many make a point.
double screenUnitsPerPoint(const NSWindow* window) {
    return InstanceMethod<"NSWindow", "userSpaceScaleFactor", CGFloat()>::send(window);
}

} // namespace platform::appkit
