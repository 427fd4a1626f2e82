#pragma once

#include "platform/foundation/NSTimer.hpp"
#include "platform/objc/Retained.hpp"

#include <chrono>
#include <functional>

namespace platform::appkit {

/// Seconds of a clock that never runs backwards. Any thread.
[[nodiscard]] inline double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Calls a function again and again while it runs, also while a menu is open or a dialog is up.
/// Resting it costs nothing. Main thread.
class RepeatingTimer {
  public:
    explicit RepeatingTimer(std::function<void()> tick);
    ~RepeatingTimer();
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;

    /// Ticks 60 times a second from now on. Nothing when it runs already.
    void start();
    void stop();

    [[nodiscard]] bool isRunning() const { return static_cast<bool>(timer_); }

  private:
    std::function<void()> tick_;
    objc::Retained<foundation::NSObject> target_;
    objc::Retained<foundation::NSTimer> timer_;
};

} // namespace platform::appkit
