#include "kovraUninstaller/app/UninstallerPage.hpp"

#include "kovraUninstaller/ui/PageTexts.hpp"
#include "platform/services/Queues.hpp"

#include <utility>

namespace kovra {

UninstallerPage::UninstallerPage(std::unique_ptr<UninstallService> service,
                                 std::function<void()> quit)
    : service_(std::move(service)),
      content_({.startUninstall = [this] { service_->startUninstall(); },
                .showLogInFinder = [this] { service_->showLogInFinder(); },
                .openDownloadPage = [this] { service_->openDownloadPage(); },
                .quit = std::move(quit)}),
      page_(UninstallerView::size,
            [this](const platform::declarative::PageValues& values) {
                return content_.body(service_->phase(), service_->progressFraction(), values);
            }),
      announcedPhase_(service_->phase().index()) {
    // The service notifies before the change, so the new phase is read in a later turn of the loop.
    service_->onWillChange([this] {
        page_.refreshSoon();
        platform::mainQueue().post([page = std::weak_ptr(self_)] {
            if (const auto alive = page.lock()) {
                (*alive)->announceNewPhase();
            }
        });
    });
}

void UninstallerPage::announceNewPhase() {
    const Phase& phase = service_->phase();
    if (std::exchange(announcedPhase_, phase.index()) != phase.index()) {
        page_.announce(announcementOf(phase));
    }
}

} // namespace kovra
