#include "platform/base/FileSystem.hpp"
#include "platform/base/UniqueFd.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace platform {
namespace {

using ::testing::Optional;
using ::testing::UnorderedElementsAre;

class FileSystem : public ::testing::Test {
  protected:
    testing::TemporaryFolder tree;
};

TEST_F(FileSystem, FilesFoldersAndLinksToThemExist) {
    std::filesystem::create_symlink(tree.file("file"), tree.path("link"));
    EXPECT_TRUE(fileExists(tree.path("file")));
    EXPECT_TRUE(fileExists(tree.path("link")));
    EXPECT_TRUE(fileExists(tree.path()));
    EXPECT_TRUE(fileExists(tree.path() + "//file"));
}

TEST_F(FileSystem, ADanglingLinkALinkToItselfAndAPathThroughAFileDoNotExist) {
    std::filesystem::create_symlink("nowhere", tree.path("dangling"));
    std::filesystem::create_symlink("circle", tree.path("circle"));
    tree.file("file");
    EXPECT_FALSE(fileExists(tree.path("dangling")));
    EXPECT_FALSE(fileExists(tree.path("circle")));
    EXPECT_FALSE(fileExists(tree.path("file/inside")));
    EXPECT_FALSE(fileExists(tree.path("FILE")));
    EXPECT_FALSE(fileExists(""));
    EXPECT_FALSE(fileExists(std::string(10000, 'a')));
}

TEST_F(FileSystem, WithoutSearchPermissionAFoldersEntriesDoNotExistAndCannotBeListed) {
    tree.file("closed/file");
    std::filesystem::permissions(tree.path(), std::filesystem::perms{0755});
    std::filesystem::permissions(tree.path("closed"), std::filesystem::perms{0});
    EXPECT_TRUE(testing::holdsInForkedProcess([&] {
        testing::becomeNobody();
        return fileExists(tree.path("closed")) && !fileExists(tree.path("closed/file")) &&
               !namesInFolder(tree.path("closed"));
    }));
}

TEST_F(FileSystem, AListingHoldsEveryNameHoweverOdd) {
    for (const char* name : {".hidden", "a b", "line\nfeed", "\"quoted\"", "\xFF\xFE", "..."}) {
        tree.file(name);
    }
    tree.file("folder/not listed");
    EXPECT_THAT(namesInFolder(tree.path()),
                Optional(UnorderedElementsAre(".hidden", "a b", "line\nfeed", "\"quoted\"",
                                              "\xFF\xFE", "...", "folder")));
}

TEST_F(FileSystem, AnEmptyFolderHasNoNamesAndWhatIsNoFolderCannotBeListed) {
    EXPECT_THAT(namesInFolder(tree.folder("empty")), Optional(::testing::IsEmpty()));
    EXPECT_EQ(namesInFolder(tree.file("file")), std::nullopt);
    EXPECT_EQ(namesInFolder(tree.path("missing")), std::nullopt);
}

TEST_F(FileSystem, AFileIsReadWholeWithItsNulBytes) {
    std::string content(100000, 'x');
    content[5] = '\0';
    EXPECT_EQ(readFile(tree.file("file", content)), content);
    EXPECT_EQ(readFile(tree.file("empty", "")), "");
}

TEST_F(FileSystem, AFileOverTheLimitIsNotRead) {
    const std::string path = tree.file("file", std::string(20000, 'x'));
    EXPECT_EQ(readFile(path, 20000), std::string(20000, 'x'));
    EXPECT_EQ(readFile(path, 19999), std::nullopt);
    EXPECT_EQ(readFile(path, 0), std::nullopt);
    EXPECT_EQ(readFile(tree.file("empty", ""), 0), "");
}

TEST_F(FileSystem, OnlyRegularFilesAreReadAndAFifoDoesNotBlock) {
    ASSERT_EQ(::mkfifo(tree.path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(readFile(tree.path("fifo")), std::nullopt);
    EXPECT_EQ(readFile(tree.path()), std::nullopt);
    EXPECT_EQ(readFile(tree.path("missing")), std::nullopt);
    EXPECT_EQ(readFile("/dev/zero"), std::nullopt);
}

TEST_F(FileSystem, FoldersAreCreatedWithThoseAboveThem) {
    EXPECT_TRUE(createFolders(tree.path("a/b/c")));
    EXPECT_TRUE(std::filesystem::is_directory(tree.path("a/b/c")));
    EXPECT_TRUE(createFolders(tree.path("a/b/c")));
}

TEST_F(FileSystem, AFolderCannotBeCreatedInPlaceOfAFileOrInsideOne) {
    tree.file("file", "kept");
    EXPECT_FALSE(createFolders(tree.path("file")));
    EXPECT_FALSE(createFolders(tree.path("file/inside")));
    EXPECT_EQ(testing::contentOf(tree.path("file")), "kept");
}

TEST_F(FileSystem, APathWithANulByteLeadsToNothing) {
    tree.file("folder/file", "kept");
    const std::string end("\0/file", 6);
    EXPECT_FALSE(fileExists(tree.path("folder") + end));
    EXPECT_EQ(namesInFolder(tree.path("folder") + end), std::nullopt);
    EXPECT_EQ(readFile(tree.path("folder/file") + end), std::nullopt);
    EXPECT_FALSE(createFolders(tree.path("folder") + end));
    EXPECT_FALSE(createFolders(tree.path("new") + end));
    EXPECT_FALSE(fileExists(tree.path("new")));
}

TEST(LastPathComponent, IsWhatFollowsTheLastSlash) {
    EXPECT_EQ(lastPathComponent("/Library/Input Methods/kovraInput.app"), "kovraInput.app");
    EXPECT_EQ(lastPathComponent("name"), "name");
    EXPECT_EQ(lastPathComponent("/folder/"), "");
    EXPECT_EQ(lastPathComponent(""), "");
}

std::size_t namesIn(const std::string& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

TEST(WriteAll, WritesMoreThanAPipeHolds) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    UniqueFd readEnd(ends[0]);
    UniqueFd writeEnd(ends[1]);
    const std::string content(1'000'000, 'x');
    std::size_t received = 0;
    std::thread reader([&] {
        std::array<char, 4096> chunk{};
        ssize_t count = 0;
        while ((count = ::read(readEnd.get(), chunk.data(), chunk.size())) > 0) {
            received += static_cast<std::size_t>(count);
        }
    });
    EXPECT_TRUE(writeAll(writeEnd.get(), content));
    writeEnd.reset();
    reader.join();
    EXPECT_EQ(received, content.size());
}

TEST(WriteAll, ReturnsFalseWhenTheSystemRefuses) {
    const UniqueFd full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    EXPECT_FALSE(writeAll(full.get(), "x"));
    EXPECT_FALSE(writeAll(-1, "x"));
    EXPECT_TRUE(writeAll(full.get(), ""));
}

TEST(WriteFileAtomically, ReplacesTheContentAndLeavesNoTemporaryFile) {
    const testing::TemporaryFolder tree;
    const std::string path = tree.file("list", "a longer old content");
    EXPECT_TRUE(writeFileAtomically(path, "new"));
    EXPECT_TRUE(writeFileAtomically(tree.path("fresh"), ""));
    EXPECT_EQ(testing::contentOf(path), "new");
    EXPECT_TRUE(std::filesystem::exists(tree.path("fresh")));
    EXPECT_EQ(namesIn(tree.path()), 2U);
    struct stat status{};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST(WriteFileAtomically, ReplacesWhatAKilledWriterLeftAtTheTemporaryPath) {
    const testing::TemporaryFolder tree;
    const std::string path = tree.path("list");
    const std::string temporary = tree.path("list.new");
    const std::string target = tree.file("elsewhere/target", "precious");
    const std::vector<std::function<void()>> leftovers{
        [] {},
        [&] { tree.file("list.new", "a longer leftover"); },
        [&] { tree.link("list.new", target); },
        [&] { tree.file("list.new/file"); },
    };
    for (const auto& leave : leftovers) {
        leave();
        EXPECT_TRUE(writeFileAtomically(path, "new", temporary));
        EXPECT_EQ(testing::contentOf(path), "new");
        EXPECT_EQ(namesIn(tree.path()), 2U);
        std::filesystem::remove(path);
    }
    EXPECT_EQ(testing::contentOf(target), "precious");
}

TEST(WriteFileAtomically, RemovesTheTemporaryFileWhenItFails) {
    const testing::TemporaryFolder tree;
    tree.file("occupied/file");
    EXPECT_FALSE(writeFileAtomically(tree.path("occupied"), "x", tree.path("occupied.new")));
    EXPECT_EQ(namesIn(tree.path()), 1U);
}

TEST(WriteFileAtomically, WritesNothingForAPathWithANulByte) {
    const testing::TemporaryFolder tree;
    const std::string end("\0/file", 6);
    EXPECT_FALSE(writeFileAtomically(tree.file("file.XXXXXX", "old") + end, "x"));
    EXPECT_EQ(testing::contentOf(tree.path("file.XXXXXX")), "old");
    EXPECT_EQ(namesIn(tree.path()), 1U);
}

TEST(WriteFileAtomically, ChangesNothingWithoutWritePermission) {
    const testing::TemporaryFolder tree;
    tree.file("occupied/file");
    EXPECT_FALSE(writeFileAtomically(tree.path("occupied"), "x"));
    EXPECT_FALSE(writeFileAtomically(tree.path("missing/file"), "x"));
    EXPECT_EQ(namesIn(tree.path()), 1U);

    const std::string path = tree.file("closed/list", "old");
    std::filesystem::permissions(tree.path(), std::filesystem::perms{0755});
    std::filesystem::permissions(tree.path("closed"), std::filesystem::perms{0555});
    EXPECT_TRUE(testing::holdsInForkedProcess([&] {
        testing::becomeNobody();
        return !writeFileAtomically(path, "new");
    }));
    EXPECT_EQ(testing::contentOf(path), "old");
}

using testing::contentOf;
using testing::isThere;
using testing::TemporaryFolder;

TEST(CopyFile, CopiesEveryByte) {
    const TemporaryFolder temporary;
    const std::string content = std::string(200'000, 'x') + std::string("\0\n\xFF", 3);
    const std::string from = temporary.file("from", content);
    EXPECT_FALSE(copyFile(from, temporary.path("to")));
    EXPECT_EQ(contentOf(temporary.path("to")), content);
}

TEST(CopyFile, OverwritesNothing) {
    const TemporaryFolder temporary;
    const std::string from = temporary.file("from", "new");
    EXPECT_EQ(copyFile(from, temporary.file("to", "old")), std::errc::file_exists);
    EXPECT_EQ(contentOf(temporary.path("to")), "old");
    EXPECT_EQ(copyFile(from, temporary.link("link", temporary.path("target"))),
              std::errc::file_exists);
    EXPECT_FALSE(isThere(temporary.path("target")));
}

TEST(CopyFile, ReturnsTheReasonOfAFailure) {
    const TemporaryFolder temporary;
    EXPECT_EQ(copyFile(temporary.path("nothing"), temporary.path("to")),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(copyFile(temporary.folder("folder"), temporary.path("to")),
              std::errc::is_a_directory);
    EXPECT_EQ(copyFile("/dev/zero", temporary.path("to")), std::errc::invalid_argument);
    EXPECT_FALSE(isThere(temporary.path("to")));
}

TEST(CopyFile, DoesNotBlockOnAFifo) {
    const TemporaryFolder temporary;
    ASSERT_EQ(::mkfifo(temporary.path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(copyFile(temporary.path("fifo"), temporary.path("to")), std::errc::invalid_argument);
    EXPECT_FALSE(isThere(temporary.path("to")));
}

TEST(CopyFile, RejectsPathsWithANulByte) {
    const TemporaryFolder temporary;
    const std::string from = temporary.file("from");
    const std::string end("\0/file", 6);
    EXPECT_EQ(copyFile(from + end, temporary.path("to")), std::errc::invalid_argument);
    EXPECT_EQ(copyFile(from, temporary.path("to") + end), std::errc::invalid_argument);
    EXPECT_FALSE(isThere(temporary.path("to")));
}

} // namespace
} // namespace platform
