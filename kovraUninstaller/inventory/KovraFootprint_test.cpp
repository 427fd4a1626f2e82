#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "platform/testing/Environment.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using ::testing::ElementsAre;
using ::testing::Not;
using ::testing::StartsWith;

class Footprint : public ::testing::Test {
  protected:
    const platform::testing::EnvironmentVariable home{"HOME", "/Users/sam"};
};

TEST_F(Footprint, NamesTheProductsPartsInTheirOrder) {
    EXPECT_THAT(KovraFootprint::legacyLaunchAgentNames,
                ElementsAre("ai.kovra.tis-helper", "ai.kovra.agent.autostart",
                            "ai.kovra.inputmethod.agent", "ai.kovra.inputmethod.KovraAgent",
                            "ai.kovra.KovraAgent", "com.kovra.agent", "com.kovra.KovraAgent"));
    EXPECT_THAT(KovraFootprint::appGroupIDs,
                ElementsAre("group.ai.kovra.macos.shared", "group.ai.kovra.shared"));
    EXPECT_THAT(KovraFootprint::processExactNames,
                ElementsAre("kovra", "kovraInput", "KovraAgent"));
    EXPECT_THAT(KovraFootprint::processPathPatterns,
                ElementsAre("kovra.app/Contents/MacOS/", "kovraInput.app/Contents/MacOS/",
                            "KovraAgent.app/Contents/MacOS/"));
    EXPECT_THAT(KovraFootprint::knownKeychainAccounts,
                ElementsAre("ai.kovra.auth.session", "ai.kovra.auth.pendingPKCE"));
    EXPECT_THAT(KovraFootprint::legacyBundleIDs,
                ElementsAre("com.kovra.agent", "com.kovra.KovraAgent"));
    EXPECT_THAT(KovraFootprint::currentBundleIDs,
                ElementsAre("ai.kovra.inputmethod.KovraAgent", "ai.kovra.inputmethod.KovraInput"));
}

TEST_F(Footprint, NamesTheSystemsPartsInTheirOrder) {
    EXPECT_THAT(KovraFootprint::intlDataCacheNames,
                ElementsAre("com.apple.IntlDataCache.le", "com.apple.IntlDataCache.le.kbdx"));
    EXPECT_THAT(KovraFootprint::tccServices,
                ElementsAre("Microphone", "Accessibility", "ListenEvent", "PostEvent"));
    EXPECT_THAT(KovraFootprint::tempDirPrefixes,
                ElementsAre("kovra-agent-tistool-", "kovraInstaller"));
    EXPECT_THAT(KovraFootprint::hiToolboxKeys,
                ElementsAre("AppleEnabledInputSources", "AppleSelectedInputSources",
                            "AppleInputSourceHistory", "AppleDisabledInputSources"));
    EXPECT_EQ(KovraFootprint::looseMatchNeedle, "kovra");
    EXPECT_EQ(KovraFootprint::lsSweepNeedle, "kovraInput.app");
}

// Kept as a test of its own in the scan, since neither prefix would find it anyway.
TEST_F(Footprint, TheStagingFolderBeginsLikeNoLeftover) {
    EXPECT_EQ(KovraFootprint::stagingDirName, "kovra-uninstaller-tistool");
    for (const std::string_view prefix : KovraFootprint::tempDirPrefixes) {
        EXPECT_THAT(std::string(KovraFootprint::stagingDirName),
                    Not(StartsWith(std::string(prefix))));
    }
}

TEST_F(Footprint, EachLaunchAgentHasItsFileAndItsBackup) {
    const std::string folder = "/Users/sam/Library/LaunchAgents/";
    EXPECT_THAT(
        KovraFootprint::legacyLaunchAgentPlists(),
        ElementsAre(folder + "ai.kovra.tis-helper.plist", folder + "ai.kovra.tis-helper.plist.bak",
                    folder + "ai.kovra.agent.autostart.plist",
                    folder + "ai.kovra.agent.autostart.plist.bak",
                    folder + "ai.kovra.inputmethod.agent.plist",
                    folder + "ai.kovra.inputmethod.agent.plist.bak",
                    folder + "ai.kovra.inputmethod.KovraAgent.plist",
                    folder + "ai.kovra.inputmethod.KovraAgent.plist.bak",
                    folder + "ai.kovra.KovraAgent.plist", folder + "ai.kovra.KovraAgent.plist.bak",
                    folder + "com.kovra.agent.plist", folder + "com.kovra.agent.plist.bak",
                    folder + "com.kovra.KovraAgent.plist",
                    folder + "com.kovra.KovraAgent.plist.bak"));
}

TEST_F(Footprint, PreferencesContainersAndLogsStandInTheUsersLibrary) {
    const std::string library = "/Users/sam/Library/";
    EXPECT_THAT(KovraFootprint::preferencePlists(),
                ElementsAre(library + "Preferences/ai.kovra.inputmethod.KovraAgent.plist",
                            library + "Preferences/ai.kovra.inputmethod.KovraInput.plist"));
    EXPECT_THAT(KovraFootprint::groupContainerDirs(),
                ElementsAre(library + "Group Containers/group.ai.kovra.macos.shared",
                            library + "Group Containers/group.ai.kovra.shared"));
    EXPECT_THAT(KovraFootprint::logDirs(),
                ElementsAre(library + "Logs/kovra", library + "Logs/KovraInstaller"));
}

TEST_F(Footprint, EachBundleHasFiveDataFoldersAndTheProductOneMore) {
    const std::string library = "/Users/sam/Library/";
    const std::string agent = "ai.kovra.inputmethod.KovraAgent";
    const std::string input = "ai.kovra.inputmethod.KovraInput";
    EXPECT_THAT(KovraFootprint::libraryDataDirs(),
                ElementsAre(library + "Application Support/" + agent, library + "Caches/" + agent,
                            library + "HTTPStorages/" + agent, library + "WebKit/" + agent,
                            library + "Saved Application State/" + agent + ".savedState",
                            library + "Application Support/" + input, library + "Caches/" + input,
                            library + "HTTPStorages/" + input, library + "WebKit/" + input,
                            library + "Saved Application State/" + input + ".savedState",
                            library + "Application Support/kovra"));
}

TEST_F(Footprint, TheBundlesStandInTheSystemsAndInTheUsersFolders) {
    EXPECT_THAT(KovraFootprint::canonicalBundlePaths(),
                ElementsAre("/Library/Input Methods/kovraInput.app",
                            "/Users/sam/Library/Input Methods/kovraInput.app",
                            "/Applications/kovra.app", "/Users/sam/Applications/kovra.app",
                            "/Applications/KovraAgent.app",
                            "/Users/sam/Applications/KovraAgent.app"));
}

TEST_F(Footprint, ThePathsFollowTheHomeFolderOfTheMomentAsItIs) {
    home.set("/");
    EXPECT_EQ(KovraFootprint::legacyLaunchAgentPlists().front(),
              "//Library/LaunchAgents/ai.kovra.tis-helper.plist");
    EXPECT_EQ(KovraFootprint::preferencePlists().front(),
              "//Library/Preferences/ai.kovra.inputmethod.KovraAgent.plist");
    EXPECT_EQ(KovraFootprint::groupContainerDirs().size(), 2U);
    EXPECT_EQ(KovraFootprint::logDirs().front(), "//Library/Logs/kovra");
    EXPECT_EQ(KovraFootprint::libraryDataDirs().back(), "//Library/Application Support/kovra");
    EXPECT_EQ(KovraFootprint::canonicalBundlePaths()[5], "//Applications/KovraAgent.app");
    home.set("/Users/kim");
    EXPECT_EQ(KovraFootprint::logDirs().front(), "/Users/kim/Library/Logs/kovra");
}

} // namespace
} // namespace kovra
