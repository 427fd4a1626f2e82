#include "kovraUninstaller/engine/LaunchServicesDump.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto pathsIn = inputMethodPathsInLaunchServicesDump;

TEST(LaunchServicesDump, ReturnsThePathWithoutTheRecordNumber) {
    EXPECT_THAT(pathsIn("path:                       /Library/Input Methods/kovraInput.app "
                        "(0x1194)\n"),
                ElementsAre("/Library/Input Methods/kovraInput.app"));
}

TEST(LaunchServicesDump, ReadsThePathOfOlderSystemsWithoutARecordNumber) {
    EXPECT_THAT(pathsIn("\tpath:          /Library/Input Methods/kovraInput.app\n\tname: x\n"),
                ElementsAre("/Library/Input Methods/kovraInput.app"));
}

TEST(LaunchServicesDump, CutsAtTheLastRecordNumberOnly) {
    EXPECT_THAT(pathsIn("path: /a (0x1)/kovraInput.app (0x2)"),
                ElementsAre("/a (0x1)/kovraInput.app"));
    EXPECT_THAT(pathsIn("path: /a/kovraInput.app (copy)"), ElementsAre("/a/kovraInput.app (copy)"));
}

TEST(LaunchServicesDump, ReturnsEachPathOnceInSortedOrder) {
    EXPECT_THAT(pathsIn("path: /b/kovraInput.app (0x2)\n"
                        "path: /a/kovraInput.app (0x1)\n"
                        "path: /b/kovraInput.app (0x3)\n"),
                ElementsAre("/a/kovraInput.app", "/b/kovraInput.app"));
}

TEST(LaunchServicesDump, FindsPathsInsideTheBundle) {
    EXPECT_THAT(pathsIn("path: /x/kovraInput.app/Contents/PlugIns/p.appex (0x1)"),
                ElementsAre("/x/kovraInput.app/Contents/PlugIns/p.appex"));
}

TEST(LaunchServicesDump, IgnoresLinesThatAreNotPaths) {
    EXPECT_THAT(pathsIn("name: kovraInput.app\n"
                        "    path = \"/x/kovraInput.app\"\n"
                        "Path: /x/kovraInput.app\n"
                        "xpath: /x/kovraInput.app\n"
                        "path : /x/kovraInput.app\n"),
                IsEmpty());
}

TEST(LaunchServicesDump, IgnoresPathsOfOtherBundles) {
    EXPECT_THAT(pathsIn("path: /Applications/kovra.app (0x1)\n"
                        "path: /x/KovraInput.app (0x2)\n"
                        "path: /x/kovraInput.application\n"),
                ElementsAre("/x/kovraInput.application"));
}

TEST(LaunchServicesDump, AcceptsAnEmptyTextAndAMissingLastLineFeed) {
    EXPECT_THAT(pathsIn("\n\npath:/x/kovraInput.app"), ElementsAre("/x/kovraInput.app"));
    EXPECT_THAT(pathsIn({}), IsEmpty());
    EXPECT_THAT(pathsIn(""), IsEmpty());
    EXPECT_THAT(pathsIn("kovraInput.app"), IsEmpty());
}

TEST(LaunchServicesDump, TrimsSpacesAndTabsOnly) {
    EXPECT_THAT(pathsIn(" \t path: \t /x/kovraInput.app \t \n"), ElementsAre("/x/kovraInput.app"));
    EXPECT_THAT(pathsIn("path: /x/kovraInput.app\r\n"), ElementsAre("/x/kovraInput.app\r"));
}

TEST(LaunchServicesDump, ReturnsViewsOfTheDump) {
    const std::string dump = "path: /x/kovraInput.app (0x1)";
    const auto paths = pathsIn(dump);
    ASSERT_EQ(paths.size(), 1U);
    EXPECT_EQ(paths.begin()->data(), dump.data() + 6);
}

} // namespace
} // namespace kovra
