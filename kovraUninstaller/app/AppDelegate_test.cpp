#include "kovraUninstaller/app/AppDelegate.hpp"
#include "kovraUninstaller/app/testing/HarmlessService.hpp"
#include "kovraUninstaller/app/testing/WindowStandIns.hpp"
#include "platform/appkit/testing/AccessibilityStandIns.hpp"
#include "platform/appkit/testing/RunLoop.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace kovra {
namespace {

using platform::appkit::NSApplication;
using platform::appkit::testing::served;
using platform::objc::InstanceMethod;
using platform::testing::contentOf;
using platform::testing::isThere;
using testing::desktop;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::NSRect;
using testing::NSWindow;
namespace objc = platform::objc;

constexpr NSRect ownScreen{{500, 40}, {700, 600}};

// Deferred: without a window device the window manager cannot move it.
objc::Retained<NSWindow> deferredWindow() {
    auto window = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{10, 20}, {480, 450}}, NSWindow::titled, NSWindow::backingBuffered, true));
    window->setReleasedWhenClosed(false);
    return window;
}

// One for all tests: the process opens its log once.
const std::string& home() {
    static const platform::testing::TemporaryFolder folder;
    ::setenv("HOME", folder.path().c_str(), 1);
    return folder.path();
}

// Never destroyed, as in the program.
AppDelegate* makeDelegate() {
    static auto& kept = *new std::vector<AppDelegate*>;
    kept.push_back(new AppDelegate(NSApplication::sharedApplication(),
                                   [] { return testing::harmlessService({}); }));
    return kept.back();
}

class AppDelegateTest : public ::testing::Test {
  protected:
    AppDelegateTest() {
        home();
        platform::appkit::testing::recordAccessibility();
        testing::addWindowStandIns();
        desktop.windowsScreen = testing::makeScreen(ownScreen);
    }

    [[nodiscard]] NSRect frame() const { return delegate_->window->frame(); }

    // Expects the window to move there and the task to end when it has arrived.
    void expectRoomAt(double x, double y) {
        const auto before = frame().size;
        bool ended = false;
        const auto wait = [](AppDelegate& delegate, bool& ended, double x) -> platform::Task<void> {
            co_await delegate.makeRoomForSystemDialog();
            EXPECT_EQ(delegate.window->frame().origin.x, x);
            ended = true;
        };
        platform::start(wait(*delegate_, ended, x));
        EXPECT_FALSE(ended);
        EXPECT_TRUE(served([&ended] { return ended; }));
        EXPECT_EQ(frame().origin.x, x);
        EXPECT_EQ(frame().origin.y, y);
        EXPECT_EQ(frame().size.width, before.width);
        EXPECT_EQ(frame().size.height, before.height);
    }

    objc::AutoreleasePool pool_{};
    AppDelegate* delegate_ = makeDelegate();
};

TEST_F(AppDelegateTest, SupportsSecureRestorableStateUnderAClassNameOfItsOwn) {
    const auto* object =
        InstanceMethod<"NSApplication", "delegate", platform::appkit::NSObject*()>::send(
            NSApplication::sharedApplication());
    EXPECT_STREQ(objc::classNameOf(object), "KovraAppDelegate");
    EXPECT_TRUE((InstanceMethod<"NSObject", "applicationSupportsSecureRestorableState:",
                                objc::Bool(NSApplication*)>::send(object, nullptr)));
}

TEST_F(AppDelegateTest, MovesNothingBeforeThereIsAWindow) {
    platform::start(delegate_->makeRoomForSystemDialog());
    delegate_->recenterWindow();
    EXPECT_FALSE(delegate_->window);
}

TEST_F(AppDelegateTest, MakesRoomOnTheWindowsOwnScreenAndReturnsToItsMiddle) {
    delegate_->window = deferredWindow();
    const double below = ownScreen.size.height - frame().size.height;
    expectRoomAt(ownScreen.origin.x + 40, ownScreen.origin.y + below / 2);
    delegate_->recenterWindow();
    const double middle = ownScreen.origin.x + (ownScreen.size.width - frame().size.width) / 2;
    EXPECT_TRUE(served([&] { return frame().origin.x == middle; }));
    EXPECT_EQ(frame().origin.y, ownScreen.origin.y + below / 2);
}

TEST_F(AppDelegateTest, TakesTheMainScreenForAWindowThatIsOnNone) {
    desktop.windowsScreen = nullptr;
    desktop.mainScreen = testing::makeScreen({{300, 0}, {1000, 800}});
    delegate_->window = deferredWindow();
    expectRoomAt(340, 400 - frame().size.height / 2);
}

TEST_F(AppDelegateTest, LeavesTheWindowWhereItIsWithoutAnyScreen) {
    delegate_->window = deferredWindow();
    desktop.windowsScreen = desktop.mainScreen = nullptr;
    const auto before = frame().origin;
    bool ended = false;
    const auto wait = [](AppDelegate& delegate, bool& ended) -> platform::Task<void> {
        co_await delegate.makeRoomForSystemDialog();
        ended = true;
    };
    platform::start(wait(*delegate_, ended));
    EXPECT_TRUE(ended);
    delegate_->recenterWindow();
    EXPECT_EQ(frame().origin.x, before.x);
    EXPECT_EQ(frame().origin.y, before.y);
}

TEST_F(AppDelegateTest, OpensTheWindowInFrontWhenLaunchHasFinishedAndEndsTheSessionAtTheEnd) {
    const std::string log = home() + "/Library/Logs/kovraUninstaller/uninstall.log";
    const std::string marker = home() + "/Library/Logs/kovraUninstaller/.session_active";
    auto* object = InstanceMethod<"NSApplication", "delegate", testing::NSObject*()>::send(
        NSApplication::sharedApplication());
    InstanceMethod<"NSObject", "applicationDidFinishLaunching:", void(testing::NSObject*)>::send(
        object, nullptr);
    ASSERT_TRUE(delegate_->window);
    EXPECT_EQ(desktop.calls, "not at login, window in front, active before others, ");
    EXPECT_TRUE(isThere(marker));
    EXPECT_THAT(contentOf(log), HasSubstr("kovra Uninstaller v"));
    EXPECT_THAT(contentOf(log), Not(HasSubstr("Session ended normally")));
    EXPECT_NE((InstanceMethod<"NSObject", "applicationShouldTerminateAfterLastWindowClosed:",
                              objc::Bool(NSApplication*)>::send(object, nullptr)),
              NO);

    EXPECT_TRUE(served([] { return !platform::appkit::testing::announcements().empty(); }));
    InstanceMethod<"NSObject", "applicationWillTerminate:", void(testing::NSObject*)>::send(
        object, nullptr);
    EXPECT_FALSE(isThere(marker));
    EXPECT_THAT(contentOf(log), EndsWith("Session ended normally\n"));
}

} // namespace
} // namespace kovra
