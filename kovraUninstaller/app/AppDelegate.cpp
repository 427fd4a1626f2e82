#include "kovraUninstaller/app/AppDelegate.hpp"

#include "kovraUninstaller/app/MainWindow.hpp"
#include "kovraUninstaller/app/WindowPlacement.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/appkit/Toolkit.hpp"
#include "platform/objc/ClassBuilder.hpp"

#include <coroutine>
#include <optional>
#include <utility>

namespace kovra {

using namespace platform;
using appkit::NSApplication;
using appkit::NSObject;
using appkit::NSScreen;
using appkit::NSWindow;

namespace {

constexpr const char* delegateVariable = "delegate";

AppDelegate* delegateOf(const NSObject* object) {
    return static_cast<AppDelegate*>(objc::pointerVariable(object, delegateVariable));
}

void didFinishLaunching(NSObject* object, NSObject*) {
    delegateOf(object)->applicationDidFinishLaunching();
}

void willTerminate(NSObject* object, NSObject*) {
    delegateOf(object)->applicationWillTerminate();
}

// Also during a removal, and without asking.
objc::Bool shouldTerminateAfterLastWindowClosed(NSObject*, NSApplication*) {
    return objc::toBool(true);
}

// The program restores no windows, so secure coding costs it nothing; macOS 14 and later log a
// warning about a delegate without this method.
objc::Bool supportsSecureRestorableState(NSObject*, NSApplication*) {
    return objc::toBool(true);
}

// Class names are global to the process, frameworks included, hence the prefix.
Class delegateClass() {
    static const Class made =
        objc::ClassBuilder("KovraAppDelegate", "NSObject")
            .pointerVariable(delegateVariable)
            .protocol("NSApplicationDelegate")
            .method<didFinishLaunching>("applicationDidFinishLaunching:")
            .method<willTerminate>("applicationWillTerminate:")
            .method<shouldTerminateAfterLastWindowClosed>(
                "applicationShouldTerminateAfterLastWindowClosed:")
            .method<supportsSecureRestorableState>("applicationSupportsSecureRestorableState:")
            .registered();
    return made;
}

// The visible frame of the window's screen, or of the main screen; nothing without a screen.
std::optional<declarative::Rect> visibleFrameAround(const NSWindow* window) {
    const NSScreen* screen = window->screen();
    if (screen == nullptr) {
        screen = NSScreen::mainScreen();
    }
    return screen == nullptr ? std::nullopt : std::optional(appkit::toRect(screen->visibleFrame()));
}

declarative::Size frameSizeOf(const NSWindow* window) {
    const appkit::NSSize size = window->frame().size;
    return {size.width, size.height};
}

// Awaits the end of the slide.
auto slid(appkit::WindowSlide& slide, NSWindow* window, declarative::Point to) {
    struct Awaiter {
        appkit::WindowSlide& slide;
        NSWindow* window;
        declarative::Point to;

        [[nodiscard]] bool await_ready() const { return false; }

        void await_suspend(std::coroutine_handle<> caller) const {
            slide.slide(window, appkit::toNSPoint(to), [caller] { caller.resume(); });
        }

        void await_resume() const {}
    };

    return Awaiter{slide, window, to};
}

} // namespace

AppDelegate::AppDelegate(NSApplication* application, MakeService makeService)
    : application_(application), makeService_(std::move(makeService)),
      object_(objc::adopt(objc::sendMessage<NSObject*>(delegateClass(), objc::selector<"new">()))) {
    objc::setPointerVariable(object_.get(), delegateVariable, this);
    application_->setDelegate(object_.get());
    WindowMover::install(this);
}

void AppDelegate::applicationDidFinishLaunching() {
    UninstallerLog::installCrashHandlers();
    UninstallerLog::fileSessionStart();
    if (appkit::responds<"disableRelaunchOnLogin">(application_)) {
        application_->disableRelaunchOnLogin();
    }
    auto made = makeMainWindow();
    page_ = std::make_unique<UninstallerPage>(makeService_(),
                                              [this] { application_->terminate(nullptr); });
    page_->mountIn(made.get());
    window = std::move(made);
    window->makeKeyAndOrderFront(nullptr);
    application_->activateIgnoringOtherApps(true);
}

void AppDelegate::applicationWillTerminate() {
    UninstallerLog::endSession();
}

Task<void> AppDelegate::makeRoomForSystemDialog() {
    if (!window) {
        co_return;
    }
    if (const auto visible = visibleFrameAround(window.get())) {
        co_await slid(slide_, window.get(),
                      besideDialogsOrigin(*visible, frameSizeOf(window.get()),
                                          appkit::screenUnitsPerPoint(window.get())));
    }
}

void AppDelegate::recenterWindow() {
    if (!window) {
        return;
    }
    if (const auto visible = visibleFrameAround(window.get())) {
        slide_.slide(window.get(),
                     appkit::toNSPoint(centredOrigin(*visible, frameSizeOf(window.get()))),
                     nullptr);
    }
}

} // namespace kovra
