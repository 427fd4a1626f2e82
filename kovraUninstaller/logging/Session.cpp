#include "kovraUninstaller/logging/LogFile.hpp"
#include "kovraUninstaller/logging/LogLine.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/RemoveTree.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/services/MainBundle.hpp"
#include "platform/services/SystemFacts.hpp"

#include <cstddef>
#include <ctime>

namespace kovra {

namespace {

constexpr const char* architecture = "arm64";

// Much more than a date, and a bound whatever file is in the marker's place.
constexpr std::size_t mostBytesRead = 65536;

std::string separator() {
    constexpr int width = 60;
    std::string line;
    for (int i = 0; i < width; ++i) {
        line += "─";
    }
    return line;
}

} // namespace

std::string UninstallerLog::appVersion() {
    return platform::mainBundleString("CFBundleShortVersionString").value_or("?");
}

std::string UninstallerLog::appBuild() {
    return platform::mainBundleString("CFBundleVersion").value_or("?");
}

std::string UninstallerLog::macOSVersion() {
    const auto version = platform::operatingSystemVersion();
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.patch);
}

std::string UninstallerLog::macOSBuild() {
    return platform::systemControlString("kern.osversion");
}

void UninstallerLog::fileSessionStart() {
    static_cast<void>(log());
    checkPreviousSession();
    checkCrashReports();
    const std::string line = separator();
    file(line);
    file("kovra Uninstaller v" + appVersion() + " (build " + appBuild() + ")");
    file("macOS " + macOSVersion() + " (" + macOSBuild() + ")");
    file("Machine: " + platform::systemControlString("hw.model") + " [" + architecture + "]");
    file(line);
    writeSessionMarker();
}

void UninstallerLog::endSession() {
    fileHandle().appendLast(logLine("Session ended normally"));
    removeSessionMarker();
}

// The temporary file always has the same name, so that the next session replaces one that a killed
// session left behind.
void UninstallerLog::writeSessionMarker() {
    platform::writeFileAtomically(sessionMarkerFile(), dateFormatter(std::time(nullptr)),
                                  sessionMarkerFile() + ".new");
}

void UninstallerLog::removeSessionMarker() {
    static_cast<void>(platform::removeTree(sessionMarkerFile()));
}

// The marker's text is quoted unchanged; one beyond the limit counts as unreadable.
void UninstallerLog::checkPreviousSession() {
    if (!platform::fileExists(sessionMarkerFile())) {
        return;
    }
    const auto start = platform::readFile(sessionMarkerFile(), mostBytesRead);
    if (start && platform::isValidUtf8(*start)) {
        file("⚠️ Previous session (started " + *start + ") ended abnormally");
    } else {
        file("⚠️ Previous session ended abnormally");
    }
    removeSessionMarker();
}

} // namespace kovra
