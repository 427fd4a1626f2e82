#pragma once

#include "kovraUninstaller/flow/UninstallService.hpp"
#include "kovraUninstaller/ui/UninstallerView.hpp"
#include "platform/appkit/PageView.hpp"

#include <functional>
#include <memory>

namespace kovra {

/// The page alive: it owns the service, shows the service's phase and hands on what people press.
/// Lives as long as the service has work under way. Main thread.
class UninstallerPage {
  public:
    /// `quit` asks the application to terminate normally.
    UninstallerPage(std::unique_ptr<UninstallService> service, std::function<void()> quit);
    UninstallerPage(const UninstallerPage&) = delete;
    UninstallerPage& operator=(const UninstallerPage&) = delete;

    /// Becomes the whole content of the window, which does not outlive this.
    void mountIn(platform::appkit::NSWindow* window) { page_.mountIn(window); }

  private:
    void announceNewPhase();

    const std::unique_ptr<UninstallService> service_;
    UninstallerView content_;
    platform::appkit::PageView page_;
    std::size_t announcedPhase_;
    // Work that is queued asks this whether the page is still there.
    std::shared_ptr<UninstallerPage*> self_ = std::make_shared<UninstallerPage*>(this);
};

} // namespace kovra
