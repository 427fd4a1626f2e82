// The Mac's toolkit, on stand-ins for the methods that GNUstep lacks.

#include "platform/appkit/Toolkit.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/WindowSlide.hpp"
#include "platform/appkit/testing/MountingStandIns.hpp"

#include <gtest/gtest.h>

namespace platform::appkit {
namespace {

using testing::mac;

class MacWindowTest : public ::testing::Test {
  protected:
    MacWindowTest() {
        testing::addMountingStandIns();
        window_->setReleasedWhenClosed(false);
    }

    ~MacWindowTest() override { mac = {}; }

    objc::AutoreleasePool pool_{};
    objc::Retained<NSWindow> window_ = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{100, 200}, {60, 40}}, 0, NSWindow::backingBuffered, true));
};

using Mounting = MacWindowTest;
using ReducedMotion = MacWindowTest;

TEST_F(Mounting, TracksThePointerInTheVisiblePartOfTheView) {
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

TEST_F(Mounting, SetsTheLightAppearance) {
    forceLightLook(window_.get());
    ASSERT_TRUE(mac.appearance);
    EXPECT_EQ((InstanceMethod<"NSAppearance", "name", NSString*()>::send(mac.appearance.get())),
              NSAppearanceNameAqua);
}

TEST(WindowCoordinates, AreInPointsOnAMac) {
    EXPECT_EQ(screenUnitsPerPoint(nullptr), 1);
}

TEST_F(ReducedMotion, IsTheSystemsSetting) {
    EXPECT_EQ(motionPreference(), declarative::MotionPreference::full);
    mac.reducesMotion = true;
    EXPECT_EQ(motionPreference(), declarative::MotionPreference::reduced);
}

TEST_F(ReducedMotion, MovesAWindowWithoutASlide) {
    mac.reducesMotion = true;
    WindowSlide slide;
    int ended = 0;
    slide.slide(window_.get(), {30, 50}, [&ended] { ++ended; });
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(window_->frame().origin.x, 30);
    EXPECT_EQ(window_->frame().origin.y, 50);
    EXPECT_EQ(window_->frame().size.width, 60);
}

TEST_F(ReducedMotion, LetsAWindowSlideWhenItIsOff) {
    WindowSlide slide;
    int ended = 0;
    slide.slide(window_.get(), {30, 50}, [&ended] { ++ended; });
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(window_->frame().origin.x, 100);
}

} // namespace
} // namespace platform::appkit
