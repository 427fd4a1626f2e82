#include "platform/base/UniqueFd.hpp"
#include "platform/base/WriteFile.hpp"
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

std::size_t namesIn(const std::string& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

TEST(WriteAll, WritesEverythingThroughAPipeThatHoldsLess) {
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

TEST(WriteAll, SaysSoWhenTheSystemRefuses) {
    const UniqueFd full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    EXPECT_FALSE(writeAll(full.get(), "x"));
    EXPECT_FALSE(writeAll(-1, "x"));
    EXPECT_TRUE(writeAll(full.get(), ""));
}

TEST(WriteFileAtomically, PutsTheContentInPlaceOfTheOldAndLeavesNothingElse) {
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

TEST(WriteFileAtomically, TakesAwayWhatAKilledWriterLeftUnderTheGivenName) {
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

TEST(WriteFileAtomically, LeavesNothingUnderTheGivenNameWhenItFails) {
    const testing::TemporaryFolder tree;
    tree.file("occupied/file");
    EXPECT_FALSE(writeFileAtomically(tree.path("occupied"), "x", tree.path("occupied.new")));
    EXPECT_EQ(namesIn(tree.path()), 1U);
}

TEST(WriteFileAtomically, WritesNothingForAPathThatHoldsAZeroByte) {
    const testing::TemporaryFolder tree;
    const std::string end("\0/file", 6);
    EXPECT_FALSE(writeFileAtomically(tree.file("file.XXXXXX", "old") + end, "x"));
    EXPECT_EQ(testing::contentOf(tree.path("file.XXXXXX")), "old");
    EXPECT_EQ(namesIn(tree.path()), 1U);
}

TEST(WriteFileAtomically, ChangesNothingWhereItMayNotWrite) {
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

} // namespace
} // namespace platform
