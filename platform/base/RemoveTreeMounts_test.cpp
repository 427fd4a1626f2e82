#include "platform/base/RemoveTree.hpp"
#include "platform/testing/BeforeOpening.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <fcntl.h>

namespace platform {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::isThere;
using testing::OnceBeforeOpening;
using testing::OrdinaryRights;
using testing::TemporaryFolder;
using Bind = testing::PrivateMounts::Bind;
using Volume = testing::PrivateMounts::Volume;

/// Volumes in a tree that is removed.
class RemoveTreeMounts : public ::testing::Test {
  protected:
    void SetUp() override { testing::PrivateMounts::enter(); }

    /// Why something stays; without an error when nothing does.
    [[nodiscard]] RemovalFailure failureAfterRemoving(const std::string& below) const {
        return removeTree(temporary.path(below)).value_or(RemovalFailure());
    }

    void expectGone(const std::string& below) const {
        const RemovalFailure failure = failureAfterRemoving(below);
        EXPECT_FALSE(failure.error) << failure.reason();
        EXPECT_FALSE(isThere(temporary.path(below)));
    }

    /// Removes the tree, which must fail because a volume is mounted there.
    void expectKeptByAVolumeAt(const std::string& mountPoint) const {
        const RemovalFailure failure = failureAfterRemoving("tree");
        EXPECT_EQ(failure.error, std::errc::device_or_resource_busy);
        EXPECT_EQ(failure.reason(), "a volume is mounted at " + temporary.path(mountPoint));
        EXPECT_EQ(failure.mountPoint, temporary.path(mountPoint));
        EXPECT_TRUE(isThere(temporary.path(mountPoint)));
    }

    /// The path of a folder with that many nested folders.
    static std::string levels(int count) {
        std::string path = "tree";
        for (int level = 0; level < count; ++level) {
            path += "/level";
        }
        return path;
    }

    TemporaryFolder temporary;
};

TEST_F(RemoveTreeMounts, AVolumeInsideStaysAndTheRestIsRemoved) {
    const Volume volume(temporary.folder("tree/folder/volume"));
    temporary.file("tree/folder/volume/photos/photo");
    temporary.file("tree/folder/beside/file");
    temporary.file("tree/folder/file");
    temporary.file("tree/zoo/file");
    expectKeptByAVolumeAt("tree/folder/volume");
    EXPECT_EQ(contentOf(temporary.path("tree/folder/volume/photos/photo")), "content");
    EXPECT_FALSE(isThere(temporary.path("tree/folder/beside")));
    EXPECT_FALSE(isThere(temporary.path("tree/folder/file")));
    EXPECT_FALSE(isThere(temporary.path("tree/zoo")));
}

TEST_F(RemoveTreeMounts, AVolumeAtTheTopStays) {
    const Volume volume(temporary.folder("tree"));
    temporary.file("tree/folder/file");
    temporary.file("beside");
    expectKeptByAVolumeAt("tree");
    EXPECT_EQ(contentOf(temporary.path("tree/folder/file")), "content");
    EXPECT_TRUE(isThere(temporary.path("beside")));
}

TEST_F(RemoveTreeMounts, AnEmptyVolumeStaysToo) {
    const Volume inside(temporary.folder("tree/folder/volume"));
    expectKeptByAVolumeAt("tree/folder/volume");
    const Volume over(temporary.path("tree"));
    expectKeptByAVolumeAt("tree");
}

TEST_F(RemoveTreeMounts, ABindMountOfTheSameDeviceStays) {
    temporary.file("precious/deep/file");
    const std::string precious = temporary.path("precious");
    {
        const Bind bound(precious, temporary.folder("tree/folder/bound"));
        temporary.file("tree/folder/file");
        expectKeptByAVolumeAt("tree/folder/bound");
        EXPECT_FALSE(isThere(temporary.path("tree/folder/file")));
    }
    {
        const Bind bound(precious, temporary.path("tree"));
        expectKeptByAVolumeAt("tree");
    }
    EXPECT_EQ(contentOf(temporary.path("precious/deep/file")), "content");
    expectGone("tree");
}

TEST_F(RemoveTreeMounts, AFolderBindMountedOverItselfStays) {
    temporary.file("tree/file");
    const Bind bound(temporary.path("tree"), temporary.path("tree"));
    expectKeptByAVolumeAt("tree");
    EXPECT_EQ(contentOf(temporary.path("tree/file")), "content");
}

TEST_F(RemoveTreeMounts, ABindMountedFileStays) {
    const std::string precious = temporary.file("precious", "dear");
    {
        const Bind bound(precious, temporary.file("tree/folder/bound"));
        temporary.file("tree/folder/file");
        expectKeptByAVolumeAt("tree/folder/bound");
        EXPECT_FALSE(isThere(temporary.path("tree/folder/file")));
    }
    EXPECT_EQ(contentOf(temporary.path("tree/folder/bound")), "content");
    expectGone("tree");
    {
        const Bind bound(precious, temporary.file("tree"));
        expectKeptByAVolumeAt("tree");
    }
    EXPECT_EQ(contentOf(precious), "dear");
    expectGone("tree");
}

TEST_F(RemoveTreeMounts, OfNestedVolumesTheOuterOneIsReported) {
    const Volume outer(temporary.folder("tree/outer"));
    const Volume inner(temporary.folder("tree/outer/inner"));
    temporary.file("tree/outer/inner/file");
    expectKeptByAVolumeAt("tree/outer");
    EXPECT_EQ(contentOf(temporary.path("tree/outer/inner/file")), "content");
}

TEST_F(RemoveTreeMounts, OfSeveralVolumesTheFirstIsReported) {
    const Volume volume(temporary.folder("tree/folder"));
    const Bind bound(temporary.file("precious"), temporary.file("tree/file"));
    expectKeptByAVolumeAt("tree/file");
}

TEST_F(RemoveTreeMounts, AVolumeThatMayNotBeOpenedStaysAndIsReported) {
    temporary.file("tree/file");
    const Volume volume(temporary.folder("tree/volume"));
    temporary.file("tree/volume/file");
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("tree/volume"), fs::perms::none);
    {
        const OrdinaryRights ordinary;
        expectKeptByAVolumeAt("tree/volume");
    }
    EXPECT_FALSE(isThere(temporary.path("tree/file")));
    EXPECT_TRUE(isThere(temporary.path("tree/volume/file")));
}

TEST_F(RemoveTreeMounts, AVolumeAtTheTopStaysWhereItsFolderMayNotBeListed) {
    const Volume volume(temporary.folder("folder/tree"));
    temporary.file("folder/tree/file");
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("folder"), fs::perms::owner_write | fs::perms::owner_exec);
    {
        const OrdinaryRights ordinary;
        EXPECT_EQ(failureAfterRemoving("folder/tree").mountPoint, temporary.path("folder/tree"));
    }
    EXPECT_TRUE(isThere(temporary.path("folder/tree/file")));
}

// Whatever else fails, before or after.
TEST_F(RemoveTreeMounts, AVolumeTakesPrecedenceOverOtherReasons) {
    const Volume volume(temporary.folder("tree/m"));
    for (const char* locked : {"tree/a", "tree/b", "tree/y", "tree/z"}) {
        temporary.file(std::string(locked) + "/file");
    }
    OrdinaryRights::give(temporary.path());
    for (const char* locked : {"tree/a", "tree/b", "tree/y", "tree/z"}) {
        fs::permissions(temporary.path(locked), fs::perms::owner_read | fs::perms::owner_exec);
    }
    const OrdinaryRights ordinary;
    expectKeptByAVolumeAt("tree/m");
}

TEST_F(RemoveTreeMounts, ALinkToAVolumeIsRemovedAndTheVolumeIsNot) {
    const Volume volume(temporary.folder("volume"));
    temporary.file("volume/file");
    temporary.link("tree/link", temporary.path("volume"));
    expectGone("tree");
    temporary.link("tree", temporary.path("volume"));
    expectGone("tree");
    EXPECT_EQ(contentOf(temporary.path("volume/file")), "content");
}

TEST_F(RemoveTreeMounts, ALinkToAVolumeThatCannotBeRemovedIsNoMountPoint) {
    const Volume volume(temporary.folder("volume"));
    temporary.link("tree/link", temporary.path("volume"));
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("tree"), fs::perms::owner_read | fs::perms::owner_exec);
    const OrdinaryRights ordinary;
    const RemovalFailure failure = failureAfterRemoving("tree");
    EXPECT_EQ(failure.error, std::errc::permission_denied);
    EXPECT_EQ(failure.reason(), "Permission denied");
}

TEST_F(RemoveTreeMounts, ATreeOnAVolumeIsRemoved) {
    const Volume volume(temporary.folder("volume"));
    temporary.file("volume/tree/in/file");
    expectGone("volume/tree");
    temporary.file("volume/folder/deeper/tree/in/file");
    temporary.link("link", "volume/folder");
    expectGone("link/deeper/tree");
    temporary.file("volume/tree");
    expectGone("volume/tree");
    temporary.file("shown/tree/in/file");
    const Bind bound(temporary.path("shown"), temporary.folder("bound"));
    expectGone("bound/tree");
    EXPECT_FALSE(isThere(temporary.path("shown/tree")));
}

TEST_F(RemoveTreeMounts, ATreeOnAVolumeIsRemovedFromAFolderThatMayNotBeListed) {
    const Volume volume(temporary.folder("volume"));
    temporary.file("volume/tree/in/file");
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("volume"), fs::perms::owner_write | fs::perms::owner_exec);
    const OrdinaryRights ordinary;
    expectGone("volume/tree");
}

// Files of an overlay can have another device than its folders.
TEST_F(RemoveTreeMounts, AnOverlayIsOneVolume) {
    const Volume lower(temporary.folder("lower"));
    temporary.file("lower/tree/old/file");
    temporary.file("lower/tree/file");
    temporary.link("lower/tree/link", "nowhere");
    const testing::PrivateMounts::Overlay overlay(temporary.path("lower"));
    temporary.file("lower/tree/old/new");
    temporary.file("lower/tree/new/file");
    expectGone("lower/tree");
}

TEST_F(RemoveTreeMounts, AVolumeMountedJustBeforeAFolderIsOpenedStays) {
    temporary.file("tree/folder/file");
    temporary.file("tree/other/file");
    std::optional<Volume> volume;
    const OnceBeforeOpening race("folder", [&] {
        volume.emplace(temporary.path("tree/folder"));
        temporary.file("tree/folder/photo");
    });
    expectKeptByAVolumeAt("tree/folder");
    EXPECT_EQ(contentOf(temporary.path("tree/folder/photo")), "content");
    EXPECT_FALSE(isThere(temporary.path("tree/other")));
}

TEST_F(RemoveTreeMounts, AVolumeMountedJustBeforeTheTopIsOpenedStays) {
    temporary.file("tree/file");
    std::optional<Volume> volume;
    const OnceBeforeOpening race("tree", [&] {
        volume.emplace(temporary.path("tree"));
        temporary.file("tree/photo");
    });
    expectKeptByAVolumeAt("tree");
    EXPECT_EQ(contentOf(temporary.path("tree/photo")), "content");
}

TEST_F(RemoveTreeMounts, AVolumeMountedOverAFolderThatIsBeingEmptiedStays) {
    temporary.file("tree/folder/inner/file");
    std::optional<Volume> volume;
    const OnceBeforeOpening race("inner", [&] {
        volume.emplace(temporary.path("tree/folder"));
        temporary.file("tree/folder/inner/photo");
    });
    expectKeptByAVolumeAt("tree/folder");
    EXPECT_EQ(contentOf(temporary.path("tree/folder/inner/photo")), "content");
    volume.reset();
    EXPECT_TRUE(fs::is_empty(temporary.path("tree/folder")));
}

// At a great depth the way back up leads through "..", here into the volume.
TEST_F(RemoveTreeMounts, AVolumeMountedOverAFolderOnTheWayBackUpStays) {
    temporary.file(levels(40) + "/last/file");
    temporary.file("tree/beside/file");
    std::optional<Volume> volume;
    const OnceBeforeOpening race("last", [&] {
        volume.emplace(temporary.path(levels(4)));
        temporary.file(levels(4) + "/photo");
        temporary.folder(levels(5));
    });
    expectKeptByAVolumeAt(levels(4));
    EXPECT_EQ(contentOf(temporary.path(levels(4) + "/photo")), "content");
    EXPECT_TRUE(isThere(temporary.path(levels(5))));
    EXPECT_FALSE(isThere(temporary.path("tree/beside")));
}

TEST_F(RemoveTreeMounts, AFolderBindMountedOverItselfOnTheWayBackUpStays) {
    temporary.file(levels(40) + "/last/file");
    std::optional<Bind> bound;
    const std::string upper = temporary.path(levels(4));
    const OnceBeforeOpening race("last", [&] { bound.emplace(upper, upper); });
    expectKeptByAVolumeAt(levels(4));
    EXPECT_TRUE(isThere(temporary.path(levels(5))));
}

// The system removes a mount point of another namespace; what is on the volume stays.
TEST_F(RemoveTreeMounts, AVolumeInAnotherMountNamespaceKeepsItsContent) {
    temporary.file("tree/file");
    temporary.folder("tree/volume");
    const int view = ::open("/proc/self/ns/mnt", O_RDONLY | O_CLOEXEC);
    EXPECT_TRUE(testing::holdsInForkedProcess([&] {
        if (::unshare(CLONE_NEWNS) != 0) {
            return false;
        }
        const Volume volume(temporary.path("tree/volume"));
        temporary.file("tree/volume/photo");
        const int onIt = ::open(temporary.path("tree/volume").c_str(), O_RDONLY | O_DIRECTORY);
        const bool removed = testing::holdsInForkedProcess(
            [&] { return ::setns(view, CLONE_NEWNS) == 0 && !removeTree(temporary.path("tree")); });
        return removed && onIt >= 0 && ::faccessat(onIt, "photo", F_OK, 0) == 0;
    }));
    ::close(view);
    EXPECT_FALSE(isThere(temporary.path("tree")));
}

} // namespace
} // namespace platform
