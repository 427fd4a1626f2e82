#include "kovraUninstaller/engine/BestEffort.hpp"
#include "platform/testing/BeforeOpening.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using platform::testing::isThere;
using platform::testing::OnceBeforeOpening;
using platform::testing::OrdinaryRights;
using Volume = platform::testing::PrivateMounts::Volume;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BestEffort : public ::testing::Test {
  protected:
    /// Removes the paths in a forked process, which opens a new log; returns what it reported.
    Problems problemsAfterRemoving(const std::vector<std::string>& paths) const {
        EXPECT_TRUE(platform::testing::holdsInForkedProcess([&] {
            StepReport report("Area");
            removeExisting(paths, report);
            std::ofstream reported(tree.path("reported"), std::ios::binary);
            for (const std::string& problem : report.problems()) {
                reported << problem << '\n';
            }
            return true;
        }));
        return linesOf("reported");
    }

    /// The messages of the log, without their dates.
    [[nodiscard]] std::vector<std::string> logged() const {
        auto lines = linesOf("Library/Logs/kovraUninstaller/uninstall.log");
        for (std::string& line : lines) {
            line.erase(0, std::string("[2025-03-14 09:26:53] ").size());
        }
        return lines;
    }

    /// Makes a folder that its owner cannot write to; returns its path.
    std::string locked(const std::string& below) const {
        tree.file(below + "/file");
        OrdinaryRights::give(tree.path());
        using std::filesystem::perms;
        std::filesystem::permissions(tree.path(below), perms::owner_read | perms::owner_exec);
        return tree.path(below);
    }

    platform::testing::TemporaryFolder tree;

  private:
    [[nodiscard]] std::vector<std::string> linesOf(const std::string& below) const {
        std::vector<std::string> lines;
        std::ifstream file(tree.path(below), std::ios::binary);
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    const platform::testing::EnvironmentVariable home_{"HOME", tree.path().c_str()};
};

TEST_F(BestEffort, RemovesWhatExistsAndReportsNothing) {
    const std::string link = tree.link("dangling", "nowhere");
    EXPECT_THAT(problemsAfterRemoving(
                    {tree.file("file"), tree.path("nothing"), tree.folder("folder"), link}),
                IsEmpty());
    EXPECT_FALSE(isThere(tree.path("file")));
    EXPECT_FALSE(isThere(tree.path("folder")));
    EXPECT_TRUE(isThere(link));
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(BestEffort, ReportsWhatCannotBeRemovedAndLogsTheReason) {
    const std::string first = locked("first");
    const std::string second = locked("second");
    const std::string last = tree.file("last");
    const OrdinaryRights ordinary;
    EXPECT_THAT(problemsAfterRemoving({second, first, last}),
                ElementsAre("Could not remove " + second + ".", "Could not remove " + first + "."));
    EXPECT_THAT(logged(),
                ElementsAre("  Area: Could not remove " + second + ". (Permission denied)",
                            "  Area: Could not remove " + first + ". (Permission denied)"));
    EXPECT_FALSE(isThere(last));
}

TEST_F(BestEffort, LogsTheMountPointThatPreventsARemoval) {
    const Volume volume(tree.folder("tree/in/volume"));
    tree.file("tree/in/volume/photo");
    const std::string whole = tree.path("tree");
    EXPECT_THAT(problemsAfterRemoving({whole}), ElementsAre("Could not remove " + whole + "."));
    EXPECT_THAT(logged(), ElementsAre("  Area: Could not remove " + whole +
                                      ". (a volume is mounted at " + whole + "/in/volume)"));
    EXPECT_TRUE(isThere(tree.path("tree/in/volume/photo")));
}

TEST_F(BestEffort, ReplacesInvalidUtf8InReportedNames) {
    const Volume volume(tree.folder("tree\xFF/in\xFE"));
    const std::string readable = tree.path("tree\uFFFD");
    EXPECT_THAT(problemsAfterRemoving({tree.path("tree\xFF")}),
                ElementsAre("Could not remove " + readable + "."));
    EXPECT_THAT(logged(), ElementsAre("  Area: Could not remove " + readable +
                                      ". (a volume is mounted at " + readable + "/in\uFFFD)"));
}

TEST_F(BestEffort, ReportsNothingWhenThePathVanishesBeforeItsRemoval) {
    const std::string file = tree.file("file");
    const OnceBeforeOpening race("file", [&] { std::filesystem::remove(file); });
    EXPECT_THAT(problemsAfterRemoving({file}), IsEmpty());
    EXPECT_THAT(logged(), IsEmpty());
}

} // namespace
} // namespace kovra
