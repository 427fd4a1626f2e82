#include "kovraUninstaller/logging/CrashReports.hpp"

#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/services/SystemFacts.hpp"
#include "platform/services/TextCase.hpp"

namespace kovra {

namespace {

using std::chrono::seconds;

void nameRecentReportsIn(const std::string& folder, platform::FileTime now) {
    const auto names = platform::namesInFolder(folder);
    for (const std::string& name : names.value_or(std::vector<std::string>())) {
        if (!isNameOfOurCrashReport(name)) {
            continue;
        }
        const auto created = platform::creationDate(folder + "/" + name);
        if (created && isRecentCrashReport(*created, now)) {
            const auto moment = std::chrono::floor<seconds>(*created).time_since_epoch().count();
            UninstallerLog::file("⚠️ System crash report found: " + platform::repairedUtf8(name) +
                                 " (created " + UninstallerLog::dateFormatter(moment) + ")");
        }
    }
}

} // namespace

bool isNameOfOurCrashReport(std::string_view fileName) {
    constexpr std::string_view executable = "kovraUninstaller";
    return platform::localizedCaseInsensitiveContains(platform::repairedUtf8(fileName), executable);
}

bool isRecentCrashReport(platform::FileTime created, platform::FileTime now) {
    constexpr seconds window(86400);
    return created > now - window;
}

void UninstallerLog::checkCrashReports() {
    const platform::FileTime now = std::chrono::system_clock::now();
    nameRecentReportsIn(platform::homeDirectory() + "/Library/Logs/DiagnosticReports", now);
    nameRecentReportsIn("/Library/Logs/DiagnosticReports", now);
}

} // namespace kovra
