#pragma once

namespace platform::appkit {

/// To be called when something is to be drawn, and when it has been: the application's loop goes
/// round once more before it sleeps. Main thread.
void wakeEventLoop();

} // namespace platform::appkit
