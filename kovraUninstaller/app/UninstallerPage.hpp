#pragma once

#include "kovraUninstaller/flow/UninstallService.hpp"
#include "kovraUninstaller/ui/UninstallerView.hpp"
#include "platform/appkit/PageView.hpp"

#include <functional>
#include <memory>

namespace kovra {

/// Connects the service with the page: owns the service, shows its phase and runs the actions of
/// the controls. Must not be destroyed while the service has work under way. Main thread.
class UninstallerPage {
  public:
    /// `quit` asks the application to terminate normally.
    UninstallerPage(std::unique_ptr<UninstallService> service, std::function<void()> quit);
    UninstallerPage(const UninstallerPage&) = delete;
    UninstallerPage& operator=(const UninstallerPage&) = delete;

    /// Makes the page the window's content view. The window must not outlive this.
    void mountIn(platform::appkit::NSWindow* window) { page_.mountIn(window); }

  private:
    void announceNewPhase();

    const std::unique_ptr<UninstallService> service_;
    UninstallerView content_;
    platform::appkit::PageView page_;
    std::size_t announcedPhase_;
    // Queued work holds a weak reference to it, which expires with the page.
    std::shared_ptr<UninstallerPage*> self_ = std::make_shared<UninstallerPage*>(this);
};

} // namespace kovra
