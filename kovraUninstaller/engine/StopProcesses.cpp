#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/Utf8.hpp"

#include <chrono>
#include <thread>
#include <unistd.h>

namespace kovra {

namespace {

constexpr const char* launchctlTool = "/bin/launchctl";

// How long processes get to end before they are killed.
constexpr std::chrono::milliseconds gracePeriod(600);

void removeJobOf(const std::string& plist) {
    const auto printed = runBestEffort("/usr/libexec/PlistBuddy", {"-c", "Print :Label", plist});
    if (!printed || printed->terminationStatus != 0) {
        return;
    }
    const std::string label(platform::trimmed(printed->output));
    if (!label.empty()) {
        runBestEffort(launchctlTool, {"remove", label});
    }
}

void unloadAgent(const std::string& plist) {
    const std::string session = "gui/" + std::to_string(::getuid());
    runBestEffort(launchctlTool, {"bootout", session, plist});
    removeJobOf(plist);
}

void unloadAgents() {
    for (const std::string& plist : KovraFootprint::legacyLaunchAgentPlists()) {
        if (platform::fileExists(plist)) {
            unloadAgent(plist);
        }
    }
}

void switchOffStartAtLogin() {
    for (const std::string_view domain : KovraFootprint::appGroupIDs) {
        runBestEffort("/usr/bin/defaults",
                      {"write", std::string(domain), std::string(KovraFootprint::startAtLoginKey),
                       "-bool", "false"});
    }
}

} // namespace

Problems UninstallEngine::stopProcesses() {
    killKovraProcesses(std::nullopt);
    std::this_thread::sleep_for(gracePeriod);
    killKovraProcesses("-9");
    unloadAgents();
    switchOffStartAtLogin();
    UninstallerLog::file("  Stop: processes and launch agents — OK");
    return {};
}

void UninstallEngine::killKovraProcesses(const std::optional<std::string>& signalFlag) {
    const auto signalAll = [&](const char* match, const auto& patterns) {
        for (const std::string_view pattern : patterns) {
            std::vector<std::string> arguments{match, std::string(pattern)};
            if (signalFlag) {
                arguments.insert(arguments.begin(), *signalFlag);
            }
            runBestEffort("/usr/bin/pkill", arguments);
        }
    };
    signalAll("-x", KovraFootprint::processExactNames);
    signalAll("-f", KovraFootprint::processPathPatterns);
}

} // namespace kovra
