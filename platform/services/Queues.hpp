#pragma once

#include "platform/base/Task.hpp"

#include <string>

namespace platform {

// The main thread's queue and those of the background.

/// The queue of the main thread. Its work runs while the main thread is in `runMainLoop` or in the
/// application's event loop.
[[nodiscard]] Executor& mainQueue();

[[nodiscard]] bool isMainThread();

/// Serves the main queue for the rest of the process, in a program without a window. Main thread.
[[noreturn]] void runMainLoop();

/// A concurrent queue of background threads at utility priority. Work may block.
[[nodiscard]] Executor& utilityQueue();

/// Makes a queue that runs one piece of work after the other, in order, at utility priority. The
/// label is for debuggers. Lives for the rest of the process.
[[nodiscard]] Executor& makeSerialQueue(const std::string& label);

// On Linux alone: how the application's event loop serves the main queue.

/// A descriptor that is readable while the main queue has work. Never closed.
[[nodiscard]] int mainQueueDescriptor();

/// Runs the next piece of work; waits when there is none. Main thread.
void runNextOfMainQueue();

} // namespace platform
