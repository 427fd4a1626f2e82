#include "platform/services/FileDates.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(CreationDate, StaysWhatItIsWhateverIsChangedLater) {
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

TEST(CreationDate, IsThatOfALinkItselfAndNoneOfWhatIsNotThere) {
    const testing::TemporaryFolder folder;
    EXPECT_TRUE(creationDate(folder.link("link", "nowhere")));
    EXPECT_EQ(creationDate(folder.path("nothing")), std::nullopt);
}

} // namespace
} // namespace platform
