#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/LaunchServicesDump.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/HIToolboxStore.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/services/Async.hpp"
#include "platform/services/InputSources.hpp"
#include "platform/services/MainBundle.hpp"
#include "platform/services/TextCase.hpp"

#include <set>

namespace kovra {

namespace {

constexpr const char* fallbackInputSource = "com.apple.keylayout.ABC";
constexpr const char* lsregisterTool =
    "/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework"
    "/Support/lsregister";

// All of them are known before the first is unregistered. None when the dump is not UTF-8.
std::set<std::string> registeredInputMethodPaths() {
    std::set<std::string> paths;
    const auto dump = runBestEffort(lsregisterTool, {"-dump"}, [&](std::string_view lines) {
        for (const std::string_view path : inputMethodPathsInLaunchServicesDump(lines)) {
            paths.emplace(path);
        }
    });
    return dump && dump->isUtf8 ? paths : std::set<std::string>();
}

void cleanKeyboardSettings(StepReport& report) {
    auto settings = HIToolboxStore::read();
    if (!settings) {
        report.add("Could not read keyboard settings.");
        return;
    }
    const std::size_t removed = removeProductEntries(*settings);
    if (removed > 0 && !HIToolboxStore::write(*settings)) {
        report.add("Could not update keyboard settings.");
    }
    UninstallerLog::file("  Input method: keyboard settings entries removed — " +
                         std::to_string(removed));
}

} // namespace

platform::Task<Problems> UninstallEngine::removeInputSourceState() {
    StepReport report("Input method");
    co_await platform::runOnMain([this] { switchToABCIfCurrentIsKovra(); });
    if (stageTistoolIfNeeded()) {
        static_cast<void>(runTistool({"--disable-all"}));
    } else {
        report.add("Could not run the input source helper.");
    }
    cleanKeyboardSettings(report);
    restartPreferencesDaemon();
    clearLaunchServicesRegistrations();
    UninstallerLog::file("  Input method: TIS + LaunchServices cleanup — OK");
    co_return report.problems();
}

void UninstallEngine::switchToABCIfCurrentIsKovra() {
    const auto current = platform::currentInputSourceIdentifier();
    const bool isKovra = current && platform::lowercased(*current).find(
                                        KovraFootprint::looseMatchNeedle) != std::string::npos;
    if (isKovra && platform::selectInputSource(fallbackInputSource)) {
        UninstallerLog::file("  Input method: switched active source to ABC");
    }
}

void UninstallEngine::clearLaunchServicesRegistrations() {
    for (const std::string& path : KovraFootprint::canonicalBundlePaths()) {
        if (platform::fileExists(path)) {
            runBestEffort(lsregisterTool, {"-u", path});
        }
    }
    const std::string ownBundle = platform::mainBundlePath();
    for (const std::string& path : registeredInputMethodPaths()) {
        if (!path.starts_with(ownBundle)) {
            runBestEffort(lsregisterTool, {"-u", path});
        }
    }
}

} // namespace kovra
