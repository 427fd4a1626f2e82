#pragma once

#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/RepeatingTimer.hpp"

#include <functional>

namespace platform::appkit {

/// Moves a window in steps, by a timer: an animated setFrame: blocks the main thread on a Mac, and
/// on GNUstep does not animate. Main thread.
class WindowSlide {
  public:
    static constexpr double duration = 0.25; ///< seconds

    /// A monotonic clock, in seconds.
    using Clock = std::function<double()>;

    explicit WindowSlide(Clock clock = secondsNow);

    /// Slides the window to that origin and calls `ended` when it is there. A slide in progress
    /// stops where it is, and its `ended` is called first. With reduced motion the window moves at
    /// once.
    void slide(NSWindow* window, NSPoint to, std::function<void()> ended);

  private:
    void step();
    void end();

    Clock clock_;
    RepeatingTimer timer_;
    objc::Retained<NSWindow> window_;
    NSPoint from_{};
    NSPoint to_{};
    double start_ = 0;
    std::function<void()> ended_;
};

} // namespace platform::appkit
