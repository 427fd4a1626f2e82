#pragma once

#include <functional>

namespace platform {

/// Runs a call that enters Foundation, with a pool around it, and returns when it has ended: on
/// this thread where Foundation may be entered on any, on the main thread where it may not. There
/// the main thread's loop must be running, and must not be waiting for the caller. Any thread.
void callFoundation(const std::function<void()>& call);

} // namespace platform
