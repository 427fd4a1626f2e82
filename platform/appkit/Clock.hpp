#pragma once

#include <chrono>

namespace platform::appkit {

/// Seconds of a clock that never runs backwards. Any thread.
[[nodiscard]] inline double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace platform::appkit
