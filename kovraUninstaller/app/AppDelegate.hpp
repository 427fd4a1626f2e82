#pragma once

#include "kovraUninstaller/app/UninstallerPage.hpp"
#include "kovraUninstaller/engine/DialogRoom.hpp"
#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/WindowSlide.hpp"
#include "platform/base/Task.hpp"

#include <functional>
#include <memory>

namespace kovra {

/// Keeps the log session and the program's one window, and moves it out of the way of the system's
/// dialogs. There is one, for the life of the process. Main thread.
class AppDelegate : public DialogRoom {
  public:
    /// Makes the service that the window's page shows.
    using MakeService = std::function<std::unique_ptr<UninstallService>()>;

    /// With the real service, unless told otherwise.
    explicit AppDelegate(
        platform::appkit::NSApplication* application,
        MakeService makeService = [] { return std::make_unique<UninstallService>(); });

    /// The main window; null before launch has finished. Kept also when it has been closed.
    platform::objc::Retained<platform::appkit::NSWindow> window;

    // What the application reports.
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
