#include "kovraUninstaller/inventory/KovraFootprint.hpp"

#include "platform/services/SystemFacts.hpp"

#include <initializer_list>

namespace kovra {

namespace {

std::string joined(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (const std::string_view piece : pieces) {
        text += piece;
    }
    return text;
}

} // namespace

std::string KovraFootprint::userApplicationsDir() {
    return platform::homeDirectory() + "/Applications";
}

std::string KovraFootprint::userInputMethodsDir() {
    return platform::homeDirectory() + "/Library/Input Methods";
}

std::vector<std::string> KovraFootprint::legacyLaunchAgentPlists() {
    const std::string home = platform::homeDirectory();
    std::vector<std::string> paths;
    for (const std::string_view label : legacyLaunchAgentNames) {
        paths.push_back(joined({home, "/Library/LaunchAgents/", label, ".plist"}));
        paths.push_back(joined({home, "/Library/LaunchAgents/", label, ".plist.bak"}));
    }
    return paths;
}

std::vector<std::string> KovraFootprint::preferencePlists() {
    const std::string home = platform::homeDirectory();
    std::vector<std::string> paths;
    for (const std::string_view id : currentBundleIDs) {
        paths.push_back(joined({home, "/Library/Preferences/", id, ".plist"}));
    }
    return paths;
}

std::vector<std::string> KovraFootprint::groupContainerDirs() {
    const std::string home = platform::homeDirectory();
    std::vector<std::string> paths;
    for (const std::string_view group : appGroupIDs) {
        paths.push_back(joined({home, "/Library/Group Containers/", group}));
    }
    return paths;
}

std::vector<std::string> KovraFootprint::logDirs() {
    const std::string home = platform::homeDirectory();
    return {home + "/Library/Logs/kovra", home + "/Library/Logs/KovraInstaller"};
}

std::vector<std::string> KovraFootprint::libraryDataDirs() {
    const std::string home = platform::homeDirectory();
    std::vector<std::string> paths;
    for (const std::string_view id : currentBundleIDs) {
        paths.push_back(joined({home, "/Library/Application Support/", id}));
        paths.push_back(joined({home, "/Library/Caches/", id}));
        paths.push_back(joined({home, "/Library/HTTPStorages/", id}));
        paths.push_back(joined({home, "/Library/WebKit/", id}));
        paths.push_back(joined({home, "/Library/Saved Application State/", id, ".savedState"}));
    }
    paths.push_back(home + "/Library/Application Support/kovra");
    return paths;
}

std::vector<std::string> KovraFootprint::canonicalBundlePaths() {
    const std::string userInputMethods = userInputMethodsDir();
    const std::string userApplications = userApplicationsDir();
    return {
        joined({systemInputMethodsDir, "/", inputMethodBundleName}),
        joined({userInputMethods, "/", inputMethodBundleName}),
        joined({systemApplicationsDir, "/", mainAppBundleName}),
        joined({userApplications, "/", mainAppBundleName}),
        joined({systemApplicationsDir, "/", agentBundleName}),
        joined({userApplications, "/", agentBundleName}),
    };
}

} // namespace kovra
