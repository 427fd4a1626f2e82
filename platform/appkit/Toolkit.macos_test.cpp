// How a page is mounted on a Mac, on stand-ins for those of its calls that this toolkit lacks.

#include "platform/appkit/Toolkit.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/WindowSlide.hpp"
#include "platform/appkit/testing/MountingStandIns.hpp"

#include <gtest/gtest.h>

namespace platform::appkit {
namespace {

using testing::mac;

class OnAMacsWindow : public ::testing::Test {
  protected:
    OnAMacsWindow() {
        testing::addMountingStandIns();
        window_->setReleasedWhenClosed(false);
    }

    ~OnAMacsWindow() override { mac = {}; }

    objc::AutoreleasePool pool_{};
    objc::Retained<NSWindow> window_ = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{100, 200}, {60, 40}}, 0, NSWindow::backingBuffered, true));
};

using PageMounting = OnAMacsWindow;
using ReducedMotion = OnAMacsWindow;

TEST_F(PageMounting, FollowsThePointerOverWhateverOfTheViewIsSeen) {
    const auto view = objc::adopt(
        ClassMethod<"NSView", "alloc", NSView*()>::send()->initWithFrame({{0, 0}, {60, 40}}));
    followPointer(view.get(), window_.get());
    ASSERT_TRUE(mac.area);
    const auto* area = mac.area.get();
    EXPECT_EQ((InstanceMethod<"NSTrackingArea", "owner", NSObject*()>::send(area)), view.get());
    EXPECT_EQ((InstanceMethod<"NSTrackingArea", "options", UInteger()>::send(area)),
              NSTrackingArea::enteredAndExited | NSTrackingArea::moved |
                  NSTrackingArea::activeInActiveApplication | NSTrackingArea::inVisibleRect);
}

TEST_F(PageMounting, ForcesTheLightLook) {
    forceLightLook(window_.get());
    ASSERT_TRUE(mac.appearance);
    EXPECT_EQ((InstanceMethod<"NSAppearance", "name", NSString*()>::send(mac.appearance.get())),
              NSAppearanceNameAqua);
}

TEST(ScreenOfAMac, IsMeasuredInPoints) {
    EXPECT_EQ(screenUnitsPerPoint(nullptr), 1);
}

TEST_F(ReducedMotion, IsWhatTheSystemIsSetTo) {
    EXPECT_EQ(motionPreference(), declarative::MotionPreference::full);
    mac.reducesMotion = true;
    EXPECT_EQ(motionPreference(), declarative::MotionPreference::reduced);
}

TEST_F(ReducedMotion, PutsAWindowInItsPlaceAtOnce) {
    mac.reducesMotion = true;
    WindowSlide slide;
    int ended = 0;
    slide.slide(window_.get(), {30, 50}, [&ended] { ++ended; });
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(window_->frame().origin.x, 30);
    EXPECT_EQ(window_->frame().origin.y, 50);
    EXPECT_EQ(window_->frame().size.width, 60);
}

TEST_F(ReducedMotion, IsNoneWhenItIsNotAskedFor) {
    WindowSlide slide;
    int ended = 0;
    slide.slide(window_.get(), {30, 50}, [&ended] { ++ended; });
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(window_->frame().origin.x, 100);
}

} // namespace
} // namespace platform::appkit
