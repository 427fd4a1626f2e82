#include "kovraUninstaller/logging/LogFile.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <thread>

namespace kovra {
namespace {

using platform::testing::contentOf;
using platform::testing::isThere;
using platform::testing::OrdinaryRights;

class LogFileTest : public ::testing::Test {
  protected:
    void append(const std::string& line) const { LogFile(folder).append(line); }

    platform::testing::TemporaryFolder tree;
    const std::string folder = tree.path("Library/Logs/kovraUninstaller");
    const std::string log = folder + "/uninstall.log";
    const std::string old = folder + "/uninstall.old.log";
};

TEST_F(LogFileTest, CreatesTheFolderAndAnEmptyFile) {
    LogFile first(folder);
    EXPECT_TRUE(isThere(log));
    EXPECT_EQ(contentOf(log), "");
    first.append("header\n");
    EXPECT_EQ(contentOf(log), "header\n");
}

TEST_F(LogFileTest, AppendsToAnExistingLog) {
    append("one\n");
    append("two\n");
    EXPECT_EQ(contentOf(log), "one\ntwo\n");
    EXPECT_FALSE(isThere(old));
}

TEST_F(LogFileTest, RotatesALogOfMoreThanAMillionBytes) {
    tree.file("Library/Logs/kovraUninstaller/uninstall.log", std::string(1'000'000, 'x'));
    append("y");
    EXPECT_FALSE(isThere(old));
    EXPECT_EQ(std::filesystem::file_size(log), 1'000'001U);
    append("new\n");
    EXPECT_EQ(contentOf(log), "new\n");
    EXPECT_EQ(contentOf(old), std::string(1'000'000, 'x') + "y");
}

TEST_F(LogFileTest, RotationReplacesTheOlderLog) {
    tree.file("Library/Logs/kovraUninstaller/uninstall.log", std::string(1'000'001, 'x'));
    tree.file("Library/Logs/kovraUninstaller/uninstall.old.log", "older");
    append("new\n");
    EXPECT_EQ(std::filesystem::file_size(old), 1'000'001U);
    EXPECT_EQ(contentOf(log), "new\n");
}

// The volume is mounted at the old log, in a folder in its place, and at the log itself.
TEST_F(LogFileTest, KeepsAVolumeMountedAtTheOldLogsPathAndGoesOn) {
    using platform::testing::PrivateMounts;
    tree.file("Library/Logs/kovraUninstaller/uninstall.log", std::string(1'000'001, 'x'));
    const std::string precious = tree.file("precious", "dear");
    {
        const PrivateMounts::Bind bound(
            precious, tree.file("Library/Logs/kovraUninstaller/uninstall.old.log"));
        append("a");
        EXPECT_EQ(contentOf(old), "dear");
    }
    std::filesystem::remove(old);
    tree.file("Library/Logs/kovraUninstaller/uninstall.old.log/folder/file");
    {
        const PrivateMounts::Volume volume(old + "/folder");
        tree.file("Library/Logs/kovraUninstaller/uninstall.old.log/folder/photo");
        tree.file("Library/Logs/kovraUninstaller/uninstall.old.log/beside");
        append("b");
        EXPECT_EQ(contentOf(old + "/folder/photo"), "content");
        EXPECT_FALSE(isThere(old + "/beside"));
        const PrivateMounts::Volume over(old);
        tree.file("Library/Logs/kovraUninstaller/uninstall.old.log/photo");
        append("c");
        EXPECT_EQ(contentOf(old + "/photo"), "content");
    }
    EXPECT_EQ(contentOf(precious), "dear");
    EXPECT_EQ(contentOf(log), std::string(1'000'001, 'x') + "abc");
}

TEST_F(LogFileTest, IsNotRotatedDuringARun) {
    LogFile open(folder);
    open.append(std::string(1'500'000, 'x'));
    open.append("end");
    EXPECT_FALSE(isThere(old));
    EXPECT_EQ(std::filesystem::file_size(log), 1'500'003U);
}

TEST_F(LogFileTest, ALinkIsNeitherMeasuredByItsTargetNorMoved) {
    const std::string target = tree.file("elsewhere", std::string(2'000'000, 'x'));
    tree.link("Library/Logs/kovraUninstaller/uninstall.log", target);
    append("line\n");
    EXPECT_FALSE(isThere(old));
    EXPECT_EQ(std::filesystem::file_size(target), 2'000'005U);
}

TEST_F(LogFileTest, LosesTheLinesInAFolderWithoutWritePermission) {
    tree.folder("Library/Logs/kovraUninstaller");
    OrdinaryRights::give(tree.path());
    std::filesystem::permissions(folder, std::filesystem::perms{0500});
    {
        const OrdinaryRights ordinary;
        append("lost\n");
    }
    EXPECT_FALSE(isThere(log));
}

TEST_F(LogFileTest, GoesOnWithALargeLogThatCannotBeRotated) {
    tree.file("Library/Logs/kovraUninstaller/uninstall.log", std::string(1'000'001, 'x'));
    OrdinaryRights::give(tree.path());
    std::filesystem::permissions(folder, std::filesystem::perms{0500});
    {
        const OrdinaryRights ordinary;
        append("kept\n");
    }
    EXPECT_EQ(std::filesystem::file_size(log), 1'000'006U);
    EXPECT_FALSE(isThere(old));
}

TEST_F(LogFileTest, LosesTheLinesWhenAFileOrFolderIsInTheWay) {
    tree.folder("Library/Logs/kovraUninstaller/uninstall.log");
    append("lost\n");
    EXPECT_TRUE(std::filesystem::is_directory(log));
    EXPECT_NO_FATAL_FAILURE(LogFile(tree.file("file") + "/below").append("lost\n"));
    EXPECT_EQ(contentOf(tree.path("file")), "content");
}

TEST_F(LogFileTest, AFifoInPlaceOfTheLogNeitherBlocksNorEndsTheProgram) {
    tree.folder("Library/Logs/kovraUninstaller");
    ASSERT_EQ(::mkfifo(log.c_str(), 0600), 0);
    append("nobody reads\n");
    const int reader = ::open(log.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    LogFile read(folder);
    read.append("somebody might\n");
    ::close(reader);
    read.append("nobody any more\n");
}

TEST_F(LogFileTest, LosesTheLinesOnAFullDevice) {
    tree.link("Library/Logs/kovraUninstaller/uninstall.log", "/dev/full");
    append("lost\n");
}

TEST_F(LogFileTest, NothingFollowsTheLastLine) {
    LogFile open(folder);
    open.append("one\n");
    open.appendLast("last\n");
    open.append("late\n");
    EXPECT_EQ(contentOf(log), "one\nlast\n");
}

TEST_F(LogFileTest, ACrashLineMayFollowTheLastLine) {
    LogFile open(folder);
    open.appendCrash("before\n");
    open.appendLast("last\n");
    open.appendCrash("crash\n");
    open.append("late\n");
    EXPECT_EQ(contentOf(log), "before\nlast\ncrash\n");
}

TEST_F(LogFileTest, LinesOfSeveralThreadsAndHandlesAreNotMixed) {
    LogFile first(folder);
    LogFile second(folder);
    std::vector<std::thread> threads;
    for (char name = 'a'; name < 'e'; ++name) {
        threads.emplace_back([&, name] {
            for (int i = 0; i < 500; ++i) {
                (i % 2 == 0 ? first : second).append(std::string(300, name) + "\n");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::ifstream lines(log);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_EQ(line, std::string(300, line.front()));
    }
    EXPECT_EQ(count, 2000U);
}

} // namespace
} // namespace kovra
