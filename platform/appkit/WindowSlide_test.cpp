#include "platform/appkit/WindowSlide.hpp"
#include "platform/appkit/testing/RunLoop.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace platform::appkit {
namespace {

using testing::served;

constexpr NSPoint from{100, 200};
constexpr NSPoint to{340, 80};

/// A window that slides by a clock of the test's.
class WindowSlideTest : public ::testing::Test {
  protected:
    WindowSlideTest() { window_->setReleasedWhenClosed(false); }

    [[nodiscard]] NSPoint place() const { return window_->frame().origin; }

    void begin() {
        slide_.slide(window_.get(), to, [this] { events_ += "ended "; });
    }

    /// Lets the clock show a part of the slide's duration, and waits until the window has moved.
    [[nodiscard]] bool movesAt(double part) {
        now_ = 50 + part * WindowSlide::duration;
        const NSPoint before = place();
        return served([&] { return place().x != before.x; });
    }

    objc::AutoreleasePool pool_{};
    objc::Retained<NSWindow> window_ = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {from, {60, 40}}, 0, NSWindow::backingBuffered, true));
    double now_ = 50;
    WindowSlide slide_{[this] { return now_; }};
    std::string events_{};
};

TEST_F(WindowSlideTest, MovesInSmallStepsAndEndsAtItsTarget) {
    begin();
    double last = from.x;
    for (int part = 1; part < 10; ++part) {
        ASSERT_TRUE(movesAt(part / 10.0)) << part;
        EXPECT_GT(place().x, last);
        EXPECT_LT(place().x - last, 60); // of the 240 to go
        const double done = (place().x - from.x) / (to.x - from.x);
        EXPECT_NEAR((place().y - from.y) / (to.y - from.y), done, 0.02);
        last = place().x;
    }
    EXPECT_LT(last, to.x);
    EXPECT_EQ(events_, "");
    now_ = 50 + WindowSlide::duration;
    EXPECT_TRUE(served([this] { return !events_.empty(); }));
    EXPECT_EQ(place().x, to.x);
    EXPECT_EQ(place().y, to.y);
    EXPECT_EQ(window_->frame().size.width, 60);
}

TEST_F(WindowSlideTest, StartsAndEndsSlowly) {
    begin();
    EXPECT_EQ(place().x, from.x);
    ASSERT_TRUE(movesAt(0.1));
    EXPECT_LT(place().x, from.x + 0.05 * (to.x - from.x));
    ASSERT_TRUE(movesAt(0.5));
    EXPECT_NEAR(place().x, (from.x + to.x) / 2, 1);
    ASSERT_TRUE(movesAt(0.9));
    EXPECT_GT(place().x, to.x - 0.05 * (to.x - from.x));
}

TEST_F(WindowSlideTest, IsReplacedByAnotherFromItsCurrentPosition) {
    begin();
    ASSERT_TRUE(movesAt(0.5));
    const NSPoint middle = place();
    slide_.slide(window_.get(), from, [this] { events_ += "returned "; });
    EXPECT_EQ(events_, "ended ");
    EXPECT_EQ(place().x, middle.x);
    now_ += WindowSlide::duration;
    EXPECT_TRUE(served([this] { return events_ != "ended "; }));
    EXPECT_EQ(events_, "ended returned ");
    EXPECT_EQ(place().x, from.x);
    EXPECT_EQ(place().y, from.y);
}

TEST_F(WindowSlideTest, MayBeStartedAgainFromItsCallback) {
    slide_.slide(window_.get(), to,
                 [this] { slide_.slide(window_.get(), from, [this] { events_ += "returned "; }); });
    now_ += WindowSlide::duration;
    EXPECT_TRUE(served([this] { return place().x == to.x; }));
    now_ += WindowSlide::duration;
    EXPECT_TRUE(served([this] { return !events_.empty(); }));
    EXPECT_EQ(place().x, from.x);
}

} // namespace
} // namespace platform::appkit
