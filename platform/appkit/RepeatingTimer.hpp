#pragma once

#include "platform/foundation/NSTimer.hpp"
#include "platform/objc/Retained.hpp"

#include <chrono>
#include <functional>

namespace platform::appkit {

/// Seconds of the monotonic clock. Any thread.
[[nodiscard]] inline double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Calls a function repeatedly, in all modes of the run loop, so that it also runs while a menu or
/// a dialog is open. Uses no time while it is stopped. Main thread.
class RepeatingTimer {
  public:
    explicit RepeatingTimer(std::function<void()> tick);
    ~RepeatingTimer();
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;

    /// Calls the function 60 times a second from now on; does nothing while it is running.
    void start();
    void stop();

    [[nodiscard]] bool isRunning() const { return static_cast<bool>(timer_); }

  private:
    std::function<void()> tick_;
    objc::Retained<foundation::NSObject> target_;
    objc::Retained<foundation::NSTimer> timer_;
};

} // namespace platform::appkit
