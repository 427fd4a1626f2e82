#include "platform/appkit/EventLoop.hpp"

namespace platform::appkit {

// The system's loop is told of every event.
void wakeEventLoop() {}

} // namespace platform::appkit
