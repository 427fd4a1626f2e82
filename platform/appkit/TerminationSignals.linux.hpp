#pragma once

#include "platform/appkit/NSApplication.hpp"

namespace platform::appkit {

/// From now on a request to end, from the system or from the terminal, has the application
/// terminate normally; a second one ends the process at once. Call it once, when there is an
/// application. Main thread.
void terminateOnSignals(NSApplication* application);

} // namespace platform::appkit
