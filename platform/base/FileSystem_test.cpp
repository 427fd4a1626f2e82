#include "platform/base/FileSystem.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <sys/stat.h>

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

TEST_F(FileSystem, WhatLiesBehindAClosedFolderDoesNotExistAndCannotBeListed) {
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

TEST_F(FileSystem, AnEmptyFolderHasNoNamesAndWhatIsNoFolderHasNoListing) {
    EXPECT_THAT(namesInFolder(tree.folder("empty")), Optional(::testing::IsEmpty()));
    EXPECT_EQ(namesInFolder(tree.file("file")), std::nullopt);
    EXPECT_EQ(namesInFolder(tree.path("missing")), std::nullopt);
}

TEST_F(FileSystem, AFileIsReadWholeWithItsZeroBytes) {
    std::string content(100000, 'x');
    content[5] = '\0';
    EXPECT_EQ(readFile(tree.file("file", content)), content);
    EXPECT_EQ(readFile(tree.file("empty", "")), "");
}

TEST_F(FileSystem, AFileThatHoldsMoreThanIsWantedIsNotRead) {
    const std::string path = tree.file("file", std::string(20000, 'x'));
    EXPECT_EQ(readFile(path, 20000), std::string(20000, 'x'));
    EXPECT_EQ(readFile(path, 19999), std::nullopt);
    EXPECT_EQ(readFile(path, 0), std::nullopt);
    EXPECT_EQ(readFile(tree.file("empty", ""), 0), "");
}

TEST_F(FileSystem, WhatIsNoRegularFileIsNotReadAndAFifoDoesNotHold) {
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

TEST_F(FileSystem, APathThatHoldsAZeroByteLeadsToNothing) {
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

} // namespace
} // namespace platform
