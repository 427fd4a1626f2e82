#pragma once

#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"
#include "platform/declarative/PageState.hpp"

#include <functional>

namespace kovra {

/// The program's only page, 480 × 450 points: icon, title, subtitle, one main action and at most
/// one link, chosen by the phase alone. Main thread.
class UninstallerView {
  public:
    /// What the controls do; called on the main thread.
    struct Actions {
        std::function<void()> startUninstall;
        std::function<void()> showLogInFinder;
        std::function<void()> openDownloadPage;
        std::function<void()> quit; ///< asks the application to terminate normally
    };

    static constexpr platform::declarative::Size size{480, 450};

    explicit UninstallerView(Actions actions);

    /// The page in that phase. `progressFraction`, from 0 to 1, is the bar's target; `values` hold
    /// the current values of animations and hover fades.
    [[nodiscard]] platform::declarative::Element
    body(const Phase& phase, double progressFraction,
         const platform::declarative::PageValues& values = {}) const;

  private:
    using Element = platform::declarative::Element;
    using PageValues = platform::declarative::PageValues;

    [[nodiscard]] Element actionButton(const Phase& phase, double progressFraction,
                                       const PageValues& values) const;
    [[nodiscard]] Element belowButtonLink(const Phase& phase, const PageValues& values) const;

    Actions actions_;
};

} // namespace kovra
