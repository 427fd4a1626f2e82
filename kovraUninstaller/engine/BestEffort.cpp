#include "kovraUninstaller/engine/BestEffort.hpp"

#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/RemoveTree.hpp"
#include "platform/base/Utf8.hpp"

#include <system_error>

namespace kovra {

void StepReport::add(const std::string& sentence, const std::string& reason) {
    const std::string behind = reason.empty() ? "" : " (" + reason + ")";
    UninstallerLog::file("  " + area_ + ": " + sentence + behind);
    sentences_.push_back(sentence);
}

std::optional<Shell::Result> runBestEffort(const std::string& tool,
                                           const std::vector<std::string>& arguments) {
    try {
        return Shell::run(tool, arguments);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

std::optional<Shell::StreamedResult> runBestEffort(const std::string& tool,
                                                   const std::vector<std::string>& arguments,
                                                   const Shell::LinesReceiver& receive) {
    try {
        return Shell::run(tool, arguments, receive);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

void restartPreferencesDaemon() {
    runBestEffort("/usr/bin/killall", {"cfprefsd"});
}

void removeIfExists(const std::string& path, StepReport& report) {
    if (!platform::fileExists(path)) {
        return;
    }
    if (const auto failure = platform::removeTree(path)) {
        report.add("Could not remove " + platform::repairedUtf8(path) + ".",
                   platform::repairedUtf8(failure->reason()));
    }
}

void removeExisting(const std::vector<std::string>& paths, StepReport& report) {
    for (const std::string& path : paths) {
        removeIfExists(path, report);
    }
}

} // namespace kovra
