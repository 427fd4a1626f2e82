#include "platform/appkit/WindowSlide.hpp"

#include "platform/appkit/Toolkit.hpp"
#include "platform/declarative/Animation.hpp"

#include <utility>

namespace platform::appkit {

namespace {

void moveTo(NSWindow* window, NSPoint origin) {
    window->setFrame({origin, window->frame().size}, true);
}

} // namespace

WindowSlide::WindowSlide(Clock clock) : clock_(std::move(clock)), timer_([this] { step(); }) {}

void WindowSlide::slide(NSWindow* window, NSPoint to, std::function<void()> ended) {
    end();
    window_ = objc::retain(window);
    from_ = window->frame().origin;
    to_ = to;
    start_ = clock_();
    ended_ = std::move(ended);
    if (motionPreference() == declarative::MotionPreference::reduced) {
        moveTo(window, to);
        end();
        return;
    }
    timer_.start();
}

void WindowSlide::step() {
    const double elapsed = clock_() - start_;
    if (elapsed >= duration) {
        moveTo(window_.get(), to_);
        end();
        return;
    }
    const double done =
        motionAt(declarative::EaseInOut{duration}, {.value = 0, .velocity = 0}, 1, elapsed).value;
    moveTo(window_.get(), {from_.x + (to_.x - from_.x) * done, from_.y + (to_.y - from_.y) * done});
}

// The callback may begin the next slide, so the state is cleared first.
void WindowSlide::end() {
    timer_.stop();
    window_ = {};
    if (const auto ended = std::exchange(ended_, nullptr)) {
        ended();
    }
}

} // namespace platform::appkit
