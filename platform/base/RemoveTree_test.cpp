#include "platform/base/RemoveTree.hpp"
#include "platform/testing/BeforeOpening.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace platform {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::isThere;
using testing::OnceBeforeOpening;
using testing::OrdinaryRights;
using testing::PrivateMounts;
using testing::TemporaryFolder;

class RemoveTree : public ::testing::Test {
  protected:
    /// The path of a folder with that many nested folders.
    static std::string levels(int count) {
        std::string path = "tree";
        for (int level = 0; level < count; ++level) {
            path += "/level";
        }
        return path;
    }

    /// The error code of the removal; none when it succeeds.
    [[nodiscard]] std::error_code codeAfterRemoving(const std::string& below) const {
        const auto failure = removeTree(temporary.path(below));
        return failure ? failure->error : std::error_code();
    }

    TemporaryFolder temporary;
};

TEST_F(RemoveTree, RemovesAFolderWithEverythingInIt) {
    temporary.file("tree/a");
    temporary.file("tree/.hidden/b c/\n");
    temporary.folder("tree/empty");
    ::mkfifo(temporary.path("tree/fifo").c_str(), 0600);
    temporary.link("tree/dangling", "nowhere");
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_FALSE(isThere(temporary.path("tree")));
}

TEST_F(RemoveTree, RemovesASingleFile) {
    EXPECT_FALSE(removeTree(temporary.file("file")));
    EXPECT_FALSE(isThere(temporary.path("file")));
}

TEST_F(RemoveTree, SucceedsWhenThePathDoesNotExist) {
    temporary.file("file");
    EXPECT_FALSE(removeTree(temporary.path("nothing")));
    EXPECT_FALSE(removeTree(temporary.path("no/folder/either")));
    EXPECT_FALSE(removeTree(temporary.path("file/below")));
    EXPECT_TRUE(isThere(temporary.path("file")));
}

TEST_F(RemoveTree, RejectsAPathWithANulByte) {
    temporary.file("tree/file");
    for (const char* beginning : {"tree", "tree/file", "tree/"}) {
        const std::string path = temporary.path(beginning) + std::string("\0/file", 6);
        EXPECT_EQ(removeTree(path).value_or(RemovalFailure()).error, std::errc::invalid_argument);
    }
    EXPECT_TRUE(isThere(temporary.path("tree/file")));
}

TEST_F(RemoveTree, RemovesALinkAtTheTopAndNotItsTarget) {
    temporary.file("bystander/file");
    EXPECT_FALSE(removeTree(temporary.link("link", temporary.path("bystander"))));
    EXPECT_FALSE(isThere(temporary.path("link")));
    EXPECT_EQ(contentOf(temporary.path("bystander/file")), "content");
}

TEST_F(RemoveTree, RemovesLinksInsideAndNotTheirTargets) {
    temporary.file("bystander/file");
    temporary.link("tree/folder", temporary.path("bystander"));
    temporary.link("tree/file", temporary.path("bystander/file"));
    temporary.link("tree/up", "..");
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_FALSE(isThere(temporary.path("tree")));
    EXPECT_EQ(contentOf(temporary.path("bystander/file")), "content");
}

TEST_F(RemoveTree, DoesNotFollowALinkThatReplacesAFolderMeanwhile) {
    temporary.file("bystander/file");
    temporary.file("tree/victim/file");
    temporary.file("tree/other/file");
    const OnceBeforeOpening race("victim", [&] {
        fs::rename(temporary.path("tree/victim"), temporary.path("taken-away"));
        fs::create_symlink(temporary.path("bystander"), temporary.path("tree/victim"));
    });
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_FALSE(isThere(temporary.path("tree")));
    EXPECT_EQ(contentOf(temporary.path("bystander/file")), "content");
    EXPECT_EQ(contentOf(temporary.path("taken-away/file")), "content");
}

TEST_F(RemoveTree, DoesNotFollowALinkThatReplacesTheTopMeanwhile) {
    temporary.file("bystander/file");
    temporary.file("tree/file");
    const OnceBeforeOpening race("tree", [&] {
        fs::rename(temporary.path("tree"), temporary.path("taken-away"));
        fs::create_symlink(temporary.path("bystander"), temporary.path("tree"));
    });
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_FALSE(isThere(temporary.path("tree")));
    EXPECT_EQ(contentOf(temporary.path("bystander/file")), "content");
}

// At a great depth the way back up leads through "..": from a folder that was moved meanwhile it
// must not lead into its new parent.
TEST_F(RemoveTree, FindsItsWayBackWhenADeepFolderIsMovedMeanwhile) {
    temporary.file(levels(40) + "/last/file");
    temporary.file("tree/level/level/beside");
    const std::string moved = temporary.path("tree/level/level/level/level");
    temporary.file("bystander/tree/level");
    const OnceBeforeOpening race("last",
                                 [&] { fs::rename(moved, temporary.path("bystander/level")); });
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_EQ(contentOf(temporary.path("bystander/tree/level")), "content");
    EXPECT_TRUE(isThere(temporary.path("bystander/level")));
    EXPECT_FALSE(isThere(temporary.path("tree")));
}

// Both the folder and its former parent were moved.
TEST_F(RemoveTree, ContinuesAboveAFolderThatItCannotReachAnyMore) {
    temporary.file(levels(50) + "/last/file");
    temporary.file("tree/beside/file");
    temporary.folder("elsewhere");
    const OnceBeforeOpening race("last", [&] {
        fs::rename(temporary.path(levels(12)), temporary.path("elsewhere/lower"));
        fs::rename(temporary.path(levels(6)), temporary.path("elsewhere/upper"));
    });
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_FALSE(isThere(temporary.path("tree")));
    EXPECT_TRUE(isThere(temporary.path("elsewhere/lower")));
    EXPECT_TRUE(isThere(temporary.path("elsewhere/upper")));
}

TEST_F(RemoveTree, SucceedsWhenAnotherProcessRemovesEntriesMeanwhile) {
    for (const char* moment : {"folder", "deep"}) {
        for (const char* gone : {"tree/folder/deep", "tree/folder", "tree"}) {
            temporary.file("tree/folder/deep/file");
            temporary.file("tree/other/file");
            const OnceBeforeOpening race(moment, [&] { fs::remove_all(temporary.path(gone)); });
            const std::error_code error = codeAfterRemoving("tree");
            EXPECT_FALSE(error) << gone << " before " << moment << ": " << error.message();
            EXPECT_FALSE(isThere(temporary.path("tree")));
        }
    }
}

TEST_F(RemoveTree, SucceedsWhenAnotherProcessRemovesAVeryDeepTreeMeanwhile) {
    temporary.folder(levels(60) + "/last");
    const OnceBeforeOpening race("last", [&] { fs::remove_all(temporary.path("tree")); });
    const std::error_code error = codeAfterRemoving("tree");
    EXPECT_FALSE(error) << error.message();
}

TEST_F(RemoveTree, LeavesWhatItMayNotRemoveAndRemovesTheRest) {
    temporary.file("tree/before/file");
    temporary.file("tree/locked/inner/file");
    temporary.file("tree/zoo/file");
    temporary.file("tree/last");
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("tree/locked"), fs::perms::owner_read | fs::perms::owner_exec);
    {
        const OrdinaryRights ordinary;
        EXPECT_EQ(codeAfterRemoving("tree"), std::errc::permission_denied);
    }
    EXPECT_TRUE(isThere(temporary.path("tree/locked/inner")));
    EXPECT_FALSE(isThere(temporary.path("tree/locked/inner/file")));
    EXPECT_FALSE(isThere(temporary.path("tree/before")));
    EXPECT_FALSE(isThere(temporary.path("tree/zoo")));
    EXPECT_FALSE(isThere(temporary.path("tree/last")));
}

TEST_F(RemoveTree, LeavesAFolderThatMayNotBeListedUnlessItIsEmpty) {
    temporary.file("tree/full/file");
    temporary.folder("tree/empty");
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("tree/full"), fs::perms::none);
    fs::permissions(temporary.path("tree/empty"), fs::perms::none);
    {
        const OrdinaryRights ordinary;
        EXPECT_EQ(codeAfterRemoving("tree"), std::errc::permission_denied);
    }
    EXPECT_TRUE(isThere(temporary.path("tree/full/file")));
    EXPECT_FALSE(isThere(temporary.path("tree/empty")));
    EXPECT_EQ(fs::status(temporary.path("tree/full")).permissions(), fs::perms::none);
}

TEST_F(RemoveTree, WorksInAFolderThatMayBeSearchedButNotListed) {
    temporary.file("folder/tree/file");
    OrdinaryRights::give(temporary.path());
    fs::permissions(temporary.path("folder"), fs::perms::owner_write | fs::perms::owner_exec);
    {
        const OrdinaryRights ordinary;
        EXPECT_FALSE(removeTree(temporary.path("folder/tree")));
    }
    EXPECT_FALSE(isThere(temporary.path("folder/tree")));
}

// Deeper than the longest path, and with fewer descriptors than levels.
TEST_F(RemoveTree, RemovesAVeryDeepTreeWithFewDescriptors) {
    constexpr int levels = 3000;
    const std::string name(100, 'n');
    int at = ::open(temporary.path().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_GE(at, 0);
    ::mkdirat(at, "tree", 0700);
    std::string next = "tree";
    for (int level = 0; level < levels; ++level) {
        const int below = ::openat(at, next.c_str(), O_RDONLY | O_DIRECTORY, 0);
        ASSERT_GE(below, 0);
        ::close(at);
        at = below;
        next = name;
        ASSERT_EQ(::mkdirat(at, name.c_str(), 0700), 0);
    }
    ::close(at);

    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{64, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    const std::error_code error = codeAfterRemoving("tree");
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(error) << error.message();
    EXPECT_FALSE(isThere(temporary.path("tree")));
}

TEST_F(RemoveTree, LeavesNoDescriptorOpen) {
    const auto openDescriptors = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const PrivateMounts::Volume volume(temporary.folder("kept/a/b/volume"));
    temporary.file("tree/a/b/c/d/file");
    const auto before = openDescriptors();
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_FALSE(removeTree(temporary.path("tree")));
    EXPECT_TRUE(removeTree(temporary.path("kept")));
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace platform
