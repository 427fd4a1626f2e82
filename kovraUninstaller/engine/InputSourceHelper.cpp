#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/RemoveTree.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/services/MainBundle.hpp"
#include "platform/services/SystemFacts.hpp"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace kovra {

namespace {

// Removes an older copy first, so that the new one is never written into an existing file. Returns
// the reason of a failure.
std::optional<std::string> stage(const std::string& original, const std::string& folder,
                                 const std::string& staged) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!error && platform::fileExists(staged)) {
        if (const auto failure = platform::removeTree(staged)) {
            return failure->reason();
        }
    }
    if (!error) {
        error = platform::copyFile(original, staged);
    }
    return error ? std::optional(error.message()) : std::nullopt;
}

} // namespace

bool UninstallEngine::stageTistoolIfNeeded() {
    if (tistoolPath && ::access(tistoolPath->c_str(), X_OK) == 0) {
        return true;
    }
    const auto original = platform::mainBundleResource("tistool", "");
    if (!original) {
        UninstallerLog::error("tistool binary not found in bundle");
        return false;
    }
    const std::string folder =
        platform::temporaryDirectory() + std::string(KovraFootprint::stagingDirName);
    const std::string staged = folder + "/tistool";
    if (const auto whyNot = stage(*original, folder, staged)) {
        UninstallerLog::error("tistool staging failed: %{public}@", {*whyNot});
        return false;
    }
    constexpr mode_t everyoneRuns = 0755;
    ::chmod(staged.c_str(), everyoneRuns);
    tistoolPath = staged;
    return true;
}

std::string UninstallEngine::runTistool(const std::vector<std::string>& arguments) const {
    if (!tistoolPath) {
        return "ERROR: tistool not staged";
    }
    const auto printed = runBestEffort(*tistoolPath, arguments);
    return printed ? std::string(platform::trimmed(printed->output))
                   : "ERROR: tistool failed to run";
}

} // namespace kovra
