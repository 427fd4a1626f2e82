// Identities and removal by what a Mac's system calls return for volumes, on Linux's files. A
// device that is mounted twice stands for a volume that cannot be recognized by its device.

#include "platform/base/FolderIdentity.hpp"

#include "platform/base/RemoveTree.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/mount.h>

namespace {

// The mount points of volumes by the paths of folders; "/" for all others.
std::map<std::string, std::string> mountedOn;
int failure = 0;

int answer(const std::string& folder, struct statfs* status) {
    const auto found = mountedOn.find(folder);
    const std::string name = found == mountedOn.end() ? "/" : found->second;
    status->f_mntonname[name.copy(&status->f_mntonname[0], name.size())] = '\0';
    errno = failure;
    return failure == 0 ? 0 : -1;
}

} // namespace

int fstatfs(int descriptor, struct statfs* status) {
    return answer(std::filesystem::canonical("/proc/self/fd/" + std::to_string(descriptor)),
                  status);
}

int statfs(const char* path, struct statfs* status) {
    return answer(std::filesystem::canonical(path), status);
}

namespace platform {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::isThere;
using testing::OrdinaryRights;
using Volume = testing::PrivateMounts::Volume;

class FolderIdentityOnAMac : public ::testing::Test {
  protected:
    void TearDown() override {
        mountedOn.clear();
        failure = 0;
    }

    [[nodiscard]] std::string mountPointThatKeeps(const std::string& below) const {
        const auto whyItStays = removeTree(temporary.path(below));
        return whyItStays ? whyItStays->mountPoint : "none";
    }

    testing::TemporaryFolder temporary;
};

TEST_F(FolderIdentityOnAMac, IsTheSameByDescriptorAndByPath) {
    const std::string folder = temporary.folder("folder");
    mountedOn[folder] = "/Volumes/Disk";
    const int open = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const auto identity = identityOf(open);
    EXPECT_EQ(identity.value_or(FolderIdentity()).mount, "/Volumes/Disk");
    EXPECT_EQ(identity, identityOf(folder));
    EXPECT_EQ(identity, identityOf(temporary.link("link", folder)));
    EXPECT_NE(identity, identityOf(temporary.folder("other")));
    ::close(open);
}

TEST_F(FolderIdentityOnAMac, IsNothingWhenTheSystemCallFails) {
    EXPECT_FALSE(identityOf(-1));
    EXPECT_FALSE(identityOf(temporary.path("nothing")));
    failure = EIO;
    EXPECT_FALSE(identityOf(temporary.path()));
    temporary.file("tree/file");
    EXPECT_EQ(removeTree(temporary.path("tree")).value_or(RemovalFailure()).error,
              std::errc::io_error);
    EXPECT_TRUE(isThere(temporary.path("tree/file")));
}

TEST_F(FolderIdentityOnAMac, RemovalKeepsWhatIsOnAnotherDevice) {
    const Volume volume(temporary.folder("tree/volume"));
    temporary.file("tree/volume/photo");
    temporary.file("tree/file");
    EXPECT_EQ(mountPointThatKeeps("tree"), temporary.path("tree/volume"));
    EXPECT_EQ(mountPointThatKeeps("tree/volume"), temporary.path("tree/volume"));
    EXPECT_EQ(contentOf(temporary.path("tree/volume/photo")), "content");
    EXPECT_FALSE(isThere(temporary.path("tree/file")));
}

TEST_F(FolderIdentityOnAMac, RemovalKeepsAnotherDeviceThatMayNotBeOpened) {
    const Volume volume(temporary.folder("tree"));
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("tree"), fs::perms::none);
    const OrdinaryRights ordinary;
    EXPECT_EQ(mountPointThatKeeps("tree"), temporary.path("tree"));
}

TEST_F(FolderIdentityOnAMac, RemovalKeepsAnotherMountOfTheSameDevice) {
    temporary.file("tree/volume/photo");
    temporary.file("tree/file");
    mountedOn[temporary.path("tree/volume")] = temporary.path("tree/volume");
    EXPECT_EQ(mountPointThatKeeps("tree"), temporary.path("tree/volume"));
    EXPECT_EQ(mountPointThatKeeps("tree/volume"), temporary.path("tree/volume"));
    EXPECT_EQ(contentOf(temporary.path("tree/volume/photo")), "content");
    EXPECT_FALSE(isThere(temporary.path("tree/file")));
}

TEST_F(FolderIdentityOnAMac, RemovalTakesWhatIsOnTheVolumeOfItsFolder) {
    temporary.file("home/tree/in/file");
    for (const char* folder : {"home", "home/tree", "home/tree/in"}) {
        mountedOn[temporary.path(folder)] = "/Volumes/Homes";
    }
    EXPECT_EQ(mountPointThatKeeps("home/tree"), "none");
    EXPECT_FALSE(isThere(temporary.path("home/tree")));
}

} // namespace
} // namespace platform
