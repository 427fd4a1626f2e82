#pragma once

#include "platform/base/Task.hpp"

namespace platform {

/// The queue of the main thread. It moves once the main thread runs `runMainLoop` or the
/// application's own loop.
[[nodiscard]] Executor& mainQueue();

[[nodiscard]] bool isMainThread();

/// Serves the main queue for the rest of the process, in a program without a window. Main thread.
[[noreturn]] void runMainLoop();

} // namespace platform
