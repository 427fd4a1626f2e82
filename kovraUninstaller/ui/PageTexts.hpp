#pragma once

#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"

#include <string>

namespace kovra {

/// Every text that the page shows or VoiceOver speaks. No instances. Any thread.
struct PageTexts {
    PageTexts() = delete;

    // Titles.
    static constexpr const char* offerTitle = "Uninstall kovra";
    static constexpr const char* nothingFoundTitle = "kovra was not found";
    static constexpr const char* goodbyeTitle = "Goodbye.";
    static constexpr const char* residuesTitle = "kovra was removed";
    static constexpr const char* failedTitle = "Couldn't finish uninstalling";

    // Subtitles. That of a failure is the failed step and the reason.
    static constexpr const char* offerSubtitle =
        "This removes kovra from this Mac, including your sign-in and settings.";
    static constexpr const char* uninstallingSubtitle =
        "Your Mac may ask for your password to remove kovra from the system Input Methods folder.";
    static constexpr const char* nothingFoundSubtitle = "There is nothing to remove on this Mac.";
    static constexpr const char* goodbyeSubtitle = "kovra was removed. Thanks for giving it a try.";
    static constexpr const char* residuesSubtitle =
        "Some items could not be removed. Restarting your Mac usually clears them.";

    // Buttons, and the labels that take a button's place.
    static constexpr const char* uninstall = "Uninstall";
    static constexpr const char* retry = "Retry";
    static constexpr const char* quit = "Quit";
    static constexpr const char* checking = "Checking…";
    static constexpr const char* uninstalling = "Uninstalling…";

    // Links.
    static constexpr const char* cleanUpAnyway = "Clean up anyway";
    static constexpr const char* showLog = "Show Log";
    static constexpr const char* downloadAgain = "Download kovra again";

    // Spoken names of the result symbols.
    static constexpr const char* checkMark = "Done";
    static constexpr const char* warningSign = "Warning";
};

/// The page's headline in that phase. Any thread.
[[nodiscard]] std::string title(const Phase& phase);

/// The page's explanation in that phase, of any length. Any thread.
[[nodiscard]] std::string subtitle(const Phase& phase);

/// What VoiceOver announces when that phase begins. Any thread.
[[nodiscard]] std::string announcementOf(const Phase& phase);

} // namespace kovra
