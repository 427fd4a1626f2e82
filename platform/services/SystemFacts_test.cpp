#include "platform/services/SystemFacts.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace platform {
namespace {

using testing::EnvironmentVariable;

TEST(HomeDirectory, IsReadFromTheEnvironmentAtEachCall) {
    const EnvironmentVariable home("HOME", "/Users/first");
    EXPECT_EQ(homeDirectory(), "/Users/first");
    home.set("/Users/second");
    EXPECT_EQ(homeDirectory(), "/Users/second");
}

TEST(HomeDirectory, EndsInNoSlashUnlessItIsTheRoot) {
    const EnvironmentVariable home("HOME", "/Users/sam/");
    EXPECT_EQ(homeDirectory(), "/Users/sam");
    home.set("/Users//sam///");
    EXPECT_EQ(homeDirectory(), "/Users//sam");
    home.set("/");
    EXPECT_EQ(homeDirectory(), "/");
    home.set("//");
    EXPECT_EQ(homeDirectory(), "/");
}

TEST(HomeDirectory, IsThatOfTheAccountWhenTheEnvironmentHasNone) {
    const std::string ofAccount = ::getpwuid(::getuid())->pw_dir;
    const EnvironmentVariable home("HOME", nullptr);
    EXPECT_EQ(homeDirectory(), ofAccount);
    home.set("");
    EXPECT_EQ(homeDirectory(), ofAccount);
}

TEST(TemporaryDirectory, EndsInOneSlash) {
    const EnvironmentVariable folder("TMPDIR", "/var/folders/x");
    EXPECT_EQ(temporaryDirectory(), "/var/folders/x/");
    folder.set("/var/folders/x/");
    EXPECT_EQ(temporaryDirectory(), "/var/folders/x/");
    folder.set("");
    EXPECT_EQ(temporaryDirectory(), "/tmp/");
    folder.set(nullptr);
    EXPECT_EQ(temporaryDirectory(), "/tmp/");
}

TEST(CreationDate, DoesNotChangeWhenTheFileDoes) {
    const testing::TemporaryFolder folder;
    const std::string file = folder.file("file");
    const auto created = creationDate(file);
    ASSERT_TRUE(created);
    const auto written = std::filesystem::last_write_time(file);
    while (std::filesystem::last_write_time(file) == written) {
        std::ofstream(file) << "other content";
    }
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() -
                                               std::chrono::hours(72));
    EXPECT_EQ(creationDate(file), created);
}

TEST(CreationDate, IsThatOfALinkItselfAndNothingForAMissingFile) {
    const testing::TemporaryFolder folder;
    EXPECT_TRUE(creationDate(folder.link("link", "nowhere")));
    EXPECT_EQ(creationDate(folder.path("nothing")), std::nullopt);
}

} // namespace
} // namespace platform
