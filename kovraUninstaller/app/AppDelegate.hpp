#pragma once

#include "kovraUninstaller/app/UninstallerPage.hpp"
#include "kovraUninstaller/engine/WindowMover.hpp"
#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/WindowSlide.hpp"
#include "platform/base/Task.hpp"

#include <functional>
#include <memory>

namespace kovra {

/// Starts and ends the log session, owns the program's one window, and moves it out of the way of
/// the system's password dialog. There is one, for the life of the process. Main thread.
class AppDelegate : public WindowMover {
  public:
    /// Makes the service that the window's page shows.
    using MakeService = std::function<std::unique_ptr<UninstallService>()>;

    /// With the real service unless another is given.
    explicit AppDelegate(
        platform::appkit::NSApplication* application,
        MakeService makeService = [] { return std::make_unique<UninstallService>(); });

    /// The main window; a null pointer before launch has finished. It stays
    /// valid after it was closed.
    platform::objc::Retained<platform::appkit::NSWindow> window;

    // Called by the application.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();

    /// Slides the window to the left edge of its screen and ends when it stands there.
    platform::Task<void> makeRoomForSystemDialog() override;

    /// Begins to slide the window back to the middle of its screen.
    void recenterWindow() override;

  private:
    platform::appkit::NSApplication* application_;
    const MakeService makeService_;
    platform::objc::Retained<platform::appkit::NSObject> object_;
    std::unique_ptr<UninstallerPage> page_;
    platform::appkit::WindowSlide slide_;
};

} // namespace kovra
