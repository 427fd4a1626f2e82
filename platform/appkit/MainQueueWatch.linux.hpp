#pragma once

namespace platform::appkit {

/// From now on the application's loop serves the main queue, in each of its modes. Once, main
/// thread.
void serveMainQueueInApplicationLoop();

} // namespace platform::appkit
