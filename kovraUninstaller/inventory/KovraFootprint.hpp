#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kovra {

/// The catalogue of the product's names and paths, past and present. Other sources take them from
/// here; root's script, which writes out each path that it removes, spells its own. No instances.
/// The order of each list is the order of reports and removals. The functions prepend the user's
/// home folder, unchanged, at each call. Any thread.
class KovraFootprint {
  public:
    KovraFootprint() = delete;

    /// launchd labels of the product's agents, past and present.
    static constexpr std::array<std::string_view, 7> legacyLaunchAgentNames{
        "ai.kovra.tis-helper",        "ai.kovra.agent.autostart",
        "ai.kovra.inputmethod.agent", "ai.kovra.inputmethod.KovraAgent",
        "ai.kovra.KovraAgent",        "com.kovra.agent",
        "com.kovra.KovraAgent",
    };

    /// App groups, which are also folder names and preference domains.
    static constexpr std::array<std::string_view, 2> appGroupIDs{
        "group.ai.kovra.macos.shared",
        "group.ai.kovra.shared",
    };

    static constexpr std::string_view agentBundleID = "ai.kovra.inputmethod.KovraAgent";
    static constexpr std::string_view inputMethodBundleID = "ai.kovra.inputmethod.KovraInput";

    /// Bundle identifiers of the current background agent and input method.
    static constexpr std::array<std::string_view, 2> currentBundleIDs{
        agentBundleID,
        inputMethodBundleID,
    };

    /// Bundle identifiers of old product versions.
    static constexpr std::array<std::string_view, 2> legacyBundleIDs{
        "com.kovra.agent",
        "com.kovra.KovraAgent",
    };

    static constexpr std::array<std::string_view, 3> processExactNames{
        "kovra",
        "kovraInput",
        "KovraAgent",
    };

    /// Substrings of the command line of the product's processes.
    static constexpr std::array<std::string_view, 3> processPathPatterns{
        "kovra.app/Contents/MacOS/",
        "kovraInput.app/Contents/MacOS/",
        "KovraAgent.app/Contents/MacOS/",
    };

    /// Account names of sign-in items that are removed whether or not the scan saw them.
    static constexpr std::array<std::string_view, 2> knownKeychainAccounts{
        "ai.kovra.auth.session",
        "ai.kovra.auth.pendingPKCE",
    };

    /// Prefix of the product's account names.
    static constexpr std::string_view keychainAccountPrefix = "ai.kovra.";

    /// Key, in the app groups' preference domains, that starts the product at login.
    static constexpr std::string_view startAtLoginKey = "ai.kovra.startAtLogin";

    /// The system's input-data caches, which hold the product's keyboard data.
    static constexpr std::array<std::string_view, 2> intlDataCacheNames{
        "com.apple.IntlDataCache.le",
        "com.apple.IntlDataCache.le.kbdx",
    };

    /// Privacy services that the product asks for.
    static constexpr std::array<std::string_view, 4> tccServices{
        "Microphone",
        "Accessibility",
        "ListenEvent",
        "PostEvent",
    };

    /// Prefixes of folders that the product and its installer leave in the temporary folder.
    static constexpr std::array<std::string_view, 2> tempDirPrefixes{
        "kovra-agent-tistool-",
        "kovraInstaller",
    };

    /// The uninstaller's own staging folder in the temporary folder; not a remnant of the product.
    static constexpr std::string_view stagingDirName = "kovra-uninstaller-tistool";

    /// Keys of the keyboard settings whose arrays may hold entries of the product.
    static constexpr std::array<std::string_view, 4> hiToolboxKeys{
        "AppleEnabledInputSources",
        "AppleSelectedInputSources",
        "AppleInputSourceHistory",
        "AppleDisabledInputSources",
    };

    /// Found in the product's keyboard settings entries and input source identifiers, lower-cased.
    static constexpr std::string_view looseMatchNeedle = "kovra";

    /// Found in Launch Services registrations of the input method, at any path.
    static constexpr std::string_view lsSweepNeedle = "kovraInput.app";

    static constexpr std::string_view inputMethodBundlePrefix = "kovraInput";
    static constexpr std::string_view bundleSuffix = ".app";
    static constexpr std::string_view mainAppBundleName = "kovra.app";
    static constexpr std::string_view agentBundleName = "KovraAgent.app";
    static constexpr std::string_view inputMethodBundleName = "kovraInput.app";

    static constexpr std::string_view systemApplicationsDir = "/Applications";
    static constexpr std::string_view systemInputMethodsDir = "/Library/Input Methods";
    static constexpr std::string_view systemTemporaryDir = "/tmp/kovra";

    static std::string userApplicationsDir();
    static std::string userInputMethodsDir();

    static std::vector<std::string> legacyLaunchAgentPlists();
    static std::vector<std::string> preferencePlists();
    static std::vector<std::string> groupContainerDirs();
    static std::vector<std::string> logDirs();
    static std::vector<std::string> libraryDataDirs();

    /// The six fixed bundle locations, system before user for each bundle.
    static std::vector<std::string> canonicalBundlePaths();
};

} // namespace kovra
