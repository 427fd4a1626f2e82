#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "platform/testing/BeforeOpening.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

namespace kovra {

// The test program's bundle has a helper: the script testing/tistool.
class InputSourceHelperTest : public ::testing::Test {
  protected:
    bool stage() { return engine.stageTistoolIfNeeded(); }

    [[nodiscard]] const std::optional<std::string>& path() const { return engine.tistoolPath; }

    [[nodiscard]] std::string run(const std::vector<std::string>& arguments) const {
        return engine.runTistool(arguments);
    }

    void expectAFreshCopy() const {
        EXPECT_EQ(path(), staged);
        EXPECT_EQ(platform::testing::contentOf(staged), helper);
        struct stat status{};
        EXPECT_EQ(::lstat(staged.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode, S_IFREG | 0755U);
    }

    platform::testing::TemporaryFolder folder;
    const platform::testing::EnvironmentVariable temporary{"TMPDIR", folder.path().c_str()};
    const std::string stagingFolder = folder.path("kovra-uninstaller-tistool");
    const std::string staged = stagingFolder + "/tistool";
    const std::string helper = platform::testing::contentOf(HELPER);

  private:
    UninstallEngine engine;
};

namespace {

using platform::testing::contentOf;

// Grows whenever a child process has run and was waited for.
long pageFaultsOfChildren() {
    rusage used{};
    ::getrusage(RUSAGE_CHILDREN, &used);
    return used.ru_minflt;
}

TEST_F(InputSourceHelperTest, PutsAnExecutableCopyIntoTheTemporaryFolder) {
    EXPECT_EQ(path(), std::nullopt);
    EXPECT_TRUE(stage());
    expectAFreshCopy();
}

TEST_F(InputSourceHelperTest, DoesNothingWhenAnExecutableCopyExists) {
    ASSERT_TRUE(stage());
    std::ofstream(staged) << "the same file as before";
    const platform::testing::TemporaryFolder other;
    temporary.set(other.path().c_str());
    EXPECT_TRUE(stage());
    EXPECT_EQ(path(), staged);
    EXPECT_EQ(contentOf(staged), "the same file as before");
    EXPECT_TRUE(std::filesystem::is_empty(other.path()));
    temporary.set(folder.path().c_str());
    EXPECT_TRUE(stage());
    EXPECT_EQ(contentOf(staged), "the same file as before");
}

TEST_F(InputSourceHelperTest, CopiesAgainWhenTheCopyIsMissingOrNotExecutable) {
    ASSERT_TRUE(stage());
    std::ofstream(staged) << "another";
    std::filesystem::permissions(staged, std::filesystem::perms{0644});
    EXPECT_TRUE(stage());
    expectAFreshCopy();
    std::filesystem::remove_all(stagingFolder);
    EXPECT_TRUE(stage());
    expectAFreshCopy();
}

TEST_F(InputSourceHelperTest, ReplacesAStaleFileAtTheStagedPath) {
    folder.script("kovra-uninstaller-tistool/tistool", "an executable file of an earlier run");
    EXPECT_TRUE(stage());
    expectAFreshCopy();
}

TEST_F(InputSourceHelperTest, ReplacesAFolderAtTheStagedPath) {
    folder.file("kovra-uninstaller-tistool/tistool/with/a file");
    EXPECT_TRUE(stage());
    expectAFreshCopy();
}

TEST_F(InputSourceHelperTest, DoesNotStageOverAMountPoint) {
    using platform::testing::PrivateMounts;
    {
        const PrivateMounts::Volume volume(folder.folder("kovra-uninstaller-tistool/tistool"));
        folder.file("kovra-uninstaller-tistool/tistool/photo");
        EXPECT_FALSE(stage());
        EXPECT_EQ(contentOf(staged + "/photo"), "content");
    }
    std::filesystem::remove(staged);
    {
        const std::string precious = folder.file("precious", "dear");
        const PrivateMounts::Bind bound(precious, folder.file("kovra-uninstaller-tistool/tistool"));
        EXPECT_FALSE(stage());
        EXPECT_EQ(contentOf(precious), "dear");
    }
    EXPECT_EQ(path(), std::nullopt);
    EXPECT_TRUE(stage());
    expectAFreshCopy();
}

TEST_F(InputSourceHelperTest, StagesWhenTheOldCopyVanishesBeforeItsRemoval) {
    folder.file("kovra-uninstaller-tistool/tistool");
    const platform::testing::OnceBeforeOpening race("tistool",
                                                    [&] { std::filesystem::remove(staged); });
    EXPECT_TRUE(stage());
    expectAFreshCopy();
}

TEST_F(InputSourceHelperTest, KeepsTheFormerPathWhenCopyingFails) {
    folder.file("kovra-uninstaller-tistool", "no folder");
    EXPECT_FALSE(stage());
    EXPECT_EQ(path(), std::nullopt);
    std::filesystem::remove(stagingFolder);
    ASSERT_TRUE(stage());
    std::filesystem::remove_all(stagingFolder);
    folder.file("kovra-uninstaller-tistool", "no folder");
    EXPECT_FALSE(stage());
    EXPECT_EQ(path(), staged);
}

TEST_F(InputSourceHelperTest, ReturnsTheTrimmedOutputOfAHelperThatFails) {
    ASSERT_TRUE(stage());
    const long before = pageFaultsOfChildren();
    EXPECT_EQ(run({"--disable-all", "a  b"}), "was asked: --disable-all a  b");
    EXPECT_GT(pageFaultsOfChildren(), before);
}

TEST_F(InputSourceHelperTest, RunsNothingWhenNothingIsStaged) {
    const long before = pageFaultsOfChildren();
    EXPECT_EQ(run({"--disable-all"}), "ERROR: tistool not staged");
    EXPECT_EQ(pageFaultsOfChildren(), before);
}

TEST_F(InputSourceHelperTest, ReturnsAnErrorWhenTheHelperCannotBeRun) {
    ASSERT_TRUE(stage());
    std::filesystem::remove(staged);
    EXPECT_EQ(run({"--disable-all"}), "ERROR: tistool failed to run");
}

} // namespace
} // namespace kovra
