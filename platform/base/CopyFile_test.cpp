#include "platform/base/CopyFile.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace platform {
namespace {

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

TEST(CopyFile, WritesIntoNothingThatStandsThere) {
    const TemporaryFolder temporary;
    const std::string from = temporary.file("from", "new");
    EXPECT_EQ(copyFile(from, temporary.file("to", "old")), std::errc::file_exists);
    EXPECT_EQ(contentOf(temporary.path("to")), "old");
    EXPECT_EQ(copyFile(from, temporary.link("link", temporary.path("target"))),
              std::errc::file_exists);
    EXPECT_FALSE(isThere(temporary.path("target")));
}

TEST(CopyFile, TellsWhyItCannot) {
    const TemporaryFolder temporary;
    EXPECT_EQ(copyFile(temporary.path("nothing"), temporary.path("to")),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(copyFile(temporary.folder("folder"), temporary.path("to")),
              std::errc::is_a_directory);
    EXPECT_EQ(copyFile("/dev/zero", temporary.path("to")), std::errc::invalid_argument);
    EXPECT_FALSE(isThere(temporary.path("to")));
}

TEST(CopyFile, IsNotHeldUpByAPipeThatNobodyFeeds) {
    const TemporaryFolder temporary;
    ASSERT_EQ(::mkfifo(temporary.path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(copyFile(temporary.path("fifo"), temporary.path("to")), std::errc::invalid_argument);
    EXPECT_FALSE(isThere(temporary.path("to")));
}

TEST(CopyFile, TakesNoPathThatHoldsAZeroByte) {
    const TemporaryFolder temporary;
    const std::string from = temporary.file("from");
    const std::string end("\0/file", 6);
    EXPECT_EQ(copyFile(from + end, temporary.path("to")), std::errc::invalid_argument);
    EXPECT_EQ(copyFile(from, temporary.path("to") + end), std::errc::invalid_argument);
    EXPECT_FALSE(isThere(temporary.path("to")));
}

} // namespace
} // namespace platform
