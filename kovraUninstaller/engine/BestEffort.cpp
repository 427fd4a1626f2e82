#include "kovraUninstaller/engine/BestEffort.hpp"

#include "platform/base/FileSystem.hpp"
#include "platform/base/RemoveTree.hpp"
#include "platform/base/Utf8.hpp"

#include <system_error>

namespace kovra {

void runIgnoringFailure(const std::string& tool, const std::vector<std::string>& arguments) {
    static_cast<void>(runTool(tool, arguments));
}

std::optional<Shell::Result> runTool(const std::string& tool,
                                     const std::vector<std::string>& arguments) {
    try {
        return Shell::run(tool, arguments);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

void restartPreferencesDaemon() {
    runIgnoringFailure("/usr/bin/killall", {"cfprefsd"});
}

void removeIfExists(const std::string& path, Problems& problems) {
    if (platform::fileExists(path) && platform::removeTree(path)) {
        problems.push_back("Could not remove " + platform::repairedUtf8(path) + ".");
    }
}

void removeExisting(const std::vector<std::string>& paths, Problems& problems) {
    for (const std::string& path : paths) {
        removeIfExists(path, problems);
    }
}

} // namespace kovra
