#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/services/MainBundle.hpp"
#include "platform/services/SystemFacts.hpp"

namespace kovra {

namespace {

constexpr const char* architecture = "arm64";

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

} // namespace kovra
