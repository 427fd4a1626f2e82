#include "kovraUninstaller/system/Shell.hpp"

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace kovra {
namespace {

long largestResidentSize() {
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    return used.ru_maxrss; // kibibytes
}

TEST(StreamedShellMemory, ALongOutputTakesNoMoreMemoryThanAShortOne) {
    constexpr std::size_t size = 400'000'000;
    const long before = largestResidentSize();
    std::size_t received = 0;
    const auto result =
        Shell::run("/bin/sh", {"-c", "yes 'a line of a listing' | head -c 400000000"},
                   [&](std::string_view lines) { received += lines.size(); });
    EXPECT_TRUE(result.isUtf8);
    EXPECT_EQ(received, size);
    EXPECT_LT(largestResidentSize(), 2 * before);
}

} // namespace
} // namespace kovra
