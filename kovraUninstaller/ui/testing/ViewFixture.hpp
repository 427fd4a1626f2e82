#pragma once

#include "kovraUninstaller/ui/UninstallerView.hpp"
#include "platform/declarative/testing/GridMeasurer.hpp"
#include "platform/declarative/testing/PaintDescription.hpp"
#include "platform/declarative/testing/PaintQueries.hpp"

#include <string>
#include <vector>

namespace kovra::testing {

/// A page laid out with the grid measurer, whose actions are recorded by name.
struct ViewFixture {
    std::vector<std::string> calls;
    UninstallerView view{{.startUninstall = [this] { calls.emplace_back("startUninstall"); },
                          .showLogInFinder = [this] { calls.emplace_back("showLogInFinder"); },
                          .openDownloadPage = [this] { calls.emplace_back("openDownloadPage"); },
                          .quit = [this] { calls.emplace_back("quit"); }}};

    [[nodiscard]] platform::declarative::PageLayout
    page(const Phase& phase, double progressFraction = 0,
         const platform::declarative::PageValues& values = {}) const {
        return platform::declarative::layOut(view.body(phase, progressFraction, values),
                                             UninstallerView::size, measurer);
    }

    [[nodiscard]] std::vector<std::string>
    painted(const Phase& phase, double progressFraction = 0,
            const platform::declarative::PageValues& values = {}) const {
        return platform::declarative::testing::PaintDescription::linesOf(
            page(phase, progressFraction, values).paint);
    }

    platform::declarative::testing::GridMeasurer measurer;
};

} // namespace kovra::testing
