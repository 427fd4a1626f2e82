#pragma once

namespace platform {

// For an application's loop that is to serve the main queue besides.

/// Readable while work waits in the main queue. Lives as long as the process. Any thread.
[[nodiscard]] int mainQueueDescriptor();

/// Runs the next piece of work; waits for it when none is there. Main thread.
void runNextOfMainQueue();

} // namespace platform
