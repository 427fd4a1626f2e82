#pragma once

#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/RepeatingTimer.hpp"

#include <functional>

namespace platform::appkit {

/// Moves a window by steps of our own timer: the system's animation blocks on one system and jumps
/// on the other. Main thread.
class WindowSlide {
  public:
    static constexpr double duration = 0.25; ///< seconds

    /// Seconds of a clock that never runs backwards.
    using Clock = std::function<double()>;

    explicit WindowSlide(Clock clock = secondsNow);

    /// Slides the window to that place and calls `ended` when it stands there. A slide that is
    /// under way ends where it is, and its `ended` is called first. Jumps when motion is reduced.
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
