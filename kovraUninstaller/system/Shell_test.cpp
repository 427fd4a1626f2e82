#include "kovraUninstaller/system/Shell.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <system_error>

namespace kovra {
namespace {

using namespace std::string_literals;

Shell::Result shell(const std::string& script, std::optional<std::string_view> input = {}) {
    return Shell::run("/bin/sh", {"-c", script}, input);
}

TEST(Shell, GivesTheStatusAndBothStreamsAsTextAndAsBytes) {
    const auto result = shell("echo out; echo grüße >&2; exit 44");
    EXPECT_EQ(result.terminationStatus, 44);
    EXPECT_EQ(result.output, "out\ngrüße\n");
    EXPECT_EQ(result.data, "out\ngrüße\n");
}

TEST(Shell, TextThatOnlyStandardErrorGotIsOutputToo) {
    EXPECT_EQ(shell("echo problem >&2").output, "problem\n");
}

TEST(Shell, OutputThatIsNoTextIsEmptyAndItsBytesRemain) {
    const auto result = shell("printf 'fine \\377 not'");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.data, "fine \xFF not");
    EXPECT_EQ(shell("printf 'a\\0b'").output, "a\0b"s);
}

TEST(Shell, MoreThanAPipeHoldsComesWhole) {
    EXPECT_EQ(shell("head -c 200000 /dev/zero | tr '\\0' x").output, std::string(200'000, 'x'));
}

TEST(Shell, FeedsWhatItIsGivenAndAnEmptyInputIsAtItsEndAtOnce) {
    EXPECT_EQ(shell("cat", "whole input").output, "whole input");
    EXPECT_EQ(shell("cat; echo ended", "").output, "ended\n");
}

TEST(Shell, AProgramKilledByASignalGivesItsNumber) {
    EXPECT_EQ(shell("kill -KILL $$").terminationStatus, 9);
}

TEST(Shell, NothingPassesThroughAShell) {
    EXPECT_EQ(Shell::run("/bin/echo", {"$HOME", "*", "; exit 3", "a  b"}).output,
              "$HOME * ; exit 3 a  b\n");
}

TEST(Shell, AMissingProgramThrowsTheSystemsError) {
    try {
        static_cast<void>(Shell::run("/usr/bin/no-such-tool", {}));
        FAIL() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
}

TEST(Shell, AResultThatWasHandedOnOrCopiedShowsItsOwnText) {
    auto first = std::make_unique<Shell::Result>(shell("printf short"));
    const Shell::Result copy = *first;
    const Shell::Result second = std::move(*first);
    first.reset();
    EXPECT_EQ(second.output, "short");
    EXPECT_EQ(copy.output, "short");
    EXPECT_EQ(copy.data, "short");

    Shell::Result replaced = shell("printf 'no text: \\377'");
    replaced = second;
    EXPECT_EQ(replaced.output, "short");
    EXPECT_EQ(replaced.data, "short");
}

TEST(Shell, TextIsHeldOnceForItsBytesAndForItself) {
    const auto result = shell("head -c 200000 /dev/zero");
    EXPECT_EQ(result.output.view().data(), result.data.view().data());
}

} // namespace
} // namespace kovra
