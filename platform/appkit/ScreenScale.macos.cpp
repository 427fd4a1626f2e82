#include "platform/appkit/ScreenScale.hpp"

namespace platform::appkit {

double screenUnitsPerPoint(const NSWindow*) {
    return 1;
}

} // namespace platform::appkit
