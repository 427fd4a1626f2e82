#include "platform/services/FileDates.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace platform {
namespace {

FileTime changeDate(const std::string& path) {
    struct stat status{};
    ::lstat(path.c_str(), &status);
    return FileTime(std::chrono::seconds(status.st_ctim.tv_sec) +
                    std::chrono::nanoseconds(status.st_ctim.tv_nsec));
}

TEST(CreationDate, StaysWhatItIsWhateverIsChangedLater) {
    const testing::TemporaryFolder folder;
    const std::string file = folder.file("file");
    const auto created = creationDate(file);
    ASSERT_TRUE(created);
    while (changeDate(file) <= *created) {
        ::chmod(file.c_str(), 0600);
    }
    std::ofstream(file) << "other content";
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() -
                                               std::chrono::hours(72));
    EXPECT_EQ(creationDate(file), created);
}

TEST(CreationDate, IsThatOfALinkItselfAndNoneOfWhatIsNotThere) {
    const testing::TemporaryFolder folder;
    EXPECT_TRUE(creationDate(folder.link("link", "nowhere")));
    EXPECT_EQ(creationDate(folder.path("nothing")), std::nullopt);
}

} // namespace
} // namespace platform
