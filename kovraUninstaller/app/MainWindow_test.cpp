#include "kovraUninstaller/app/MainWindow.hpp"
#include "kovraUninstaller/app/testing/WindowStandIns.hpp"
#include "platform/foundation/Conversions.hpp"

#include <gtest/gtest.h>

namespace kovra {
namespace {

using platform::objc::InstanceMethod;
using testing::desktop;
using testing::NSRect;
using testing::NSWindow;
namespace appkit = platform::appkit;
namespace objc = platform::objc;

class MainWindow : public ::testing::Test {
  protected:
    MainWindow() { testing::addWindowStandIns(); }

    objc::AutoreleasePool pool_{};
};

TEST_F(MainWindow, CanBeClosedAndNeitherResizedNorMiniaturized) {
    const auto window = makeMainWindow();
    EXPECT_EQ((InstanceMethod<"NSWindow", "styleMask", objc::UInteger()>::send(window.get())), 3U);
    const auto content =
        InstanceMethod<"NSWindow", "contentRectForFrameRect:", NSRect(NSRect)>::send(
            window.get(), window->frame());
    EXPECT_EQ(content.size.width, 480);
    EXPECT_EQ(content.size.height, 450);
}

TEST_F(MainWindow, HidesItsTitle) {
    const auto window = makeMainWindow();
    auto* title = InstanceMethod<"NSWindow", "title", appkit::NSString*()>::send(window.get());
    EXPECT_EQ(platform::foundation::toString(title), "");
    EXPECT_EQ(desktop.titleVisibility, NSWindow::titleHidden);
}

TEST_F(MainWindow, IsNotOpenedAgainByTheSystem) {
    const auto window = makeMainWindow();
    EXPECT_EQ(desktop.restorable, false);
}

TEST_F(MainWindow, HasThePagesColourBehindThePage) {
    const auto window = makeMainWindow();
    auto* color =
        InstanceMethod<"NSWindow", "backgroundColor", appkit::NSColor*()>::send(window.get());
    EXPECT_NEAR((InstanceMethod<"NSColor", "redComponent", double()>::send(color)), 247.0 / 255,
                1e-6);
    EXPECT_NEAR((InstanceMethod<"NSColor", "greenComponent", double()>::send(color)), 247.0 / 255,
                1e-6);
    EXPECT_NEAR((InstanceMethod<"NSColor", "blueComponent", double()>::send(color)), 247.0 / 255,
                1e-6);
    EXPECT_EQ((InstanceMethod<"NSColor", "alphaComponent", double()>::send(color)), 1);
}

TEST_F(MainWindow, StaysWithItsOwnerWhenItIsClosedAndAmongOrdinaryWindows) {
    const auto window = makeMainWindow();
    EXPECT_EQ(
        (InstanceMethod<"NSWindow", "isReleasedWhenClosed", objc::Bool()>::send(window.get())), NO);
    EXPECT_EQ((InstanceMethod<"NSWindow", "level", objc::Integer()>::send(window.get())), 0);
}

TEST_F(MainWindow, StandsWithItsContentInTheMiddleOfTheMainScreen) {
    desktop.mainScreen = testing::makeScreen({{100, 40}, {1000, 700}});
    const auto window = makeMainWindow();
    EXPECT_EQ(window->frame().origin.x, 100 + 500 - 240);
    EXPECT_EQ(window->frame().origin.y, 40 + 350 - 225);
    EXPECT_EQ(desktop.centred, 0);
}

TEST_F(MainWindow, IsCentredByTheSystemWithoutAMainScreen) {
    desktop.mainScreen = nullptr;
    const auto window = makeMainWindow();
    EXPECT_EQ(desktop.centred, 1);
}

} // namespace
} // namespace kovra
