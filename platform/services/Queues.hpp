#pragma once

#include "platform/base/Task.hpp"

#include <string>

namespace platform {

// The main thread's queue and those of the background.

/// The queue of the main thread. It moves once the main thread runs `runMainLoop` or the
/// application's own loop.
[[nodiscard]] Executor& mainQueue();

[[nodiscard]] bool isMainThread();

/// Serves the main queue for the rest of the process, in a program without a window. Main thread.
[[noreturn]] void runMainLoop();

/// Work off the main thread, at the priority of a task that the user knows is going on. Pieces of
/// work may run at once and may block.
[[nodiscard]] Executor& utilityQueue();

/// A queue that runs one piece of work after the other, in order, at utility priority. The label
/// names it to people who look at the process. Lives for the rest of the process.
[[nodiscard]] Executor& makeSerialQueue(const std::string& label);

// On Linux alone, for an application's loop that is to serve the main queue besides.

/// Readable while work waits in the main queue. Lives as long as the process. Any thread.
[[nodiscard]] int mainQueueDescriptor();

/// Runs the next piece of work; waits for it when none is there. Main thread.
void runNextOfMainQueue();

} // namespace platform
