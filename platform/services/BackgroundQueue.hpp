#pragma once

#include "platform/base/Task.hpp"

#include <memory>
#include <string>

namespace platform {

/// Work off the main thread, at the priority of a task that the user knows is going on. Pieces of
/// work may run at once and may block.
[[nodiscard]] Executor& utilityQueue();

/// A queue that runs one piece of work after the other, in order, at utility priority. The label
/// names it to people who look at the process. Lives for the rest of the process.
[[nodiscard]] Executor& makeSerialQueue(const std::string& label);

} // namespace platform
