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

TEST(Shell, ReturnsTheStatusAndBothStreamsAsTextAndAsBytes) {
    const auto result = shell("echo out; echo grüße >&2; exit 44");
    EXPECT_EQ(result.terminationStatus, 44);
    EXPECT_EQ(result.output, "out\ngrüße\n");
    EXPECT_EQ(result.data, "out\ngrüße\n");
}

TEST(Shell, StandardErrorAloneIsOutputToo) {
    EXPECT_EQ(shell("echo problem >&2").output, "problem\n");
}

TEST(Shell, OutputThatIsNotUtf8IsEmptyAndItsBytesRemain) {
    const auto result = shell("printf 'fine \\377 not'");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.data, "fine \xFF not");
    EXPECT_EQ(shell("printf 'a\\0b'").output, "a\0b"s);
}

TEST(Shell, OutputLargerThanAPipesBufferIsComplete) {
    EXPECT_EQ(shell("head -c 200000 /dev/zero | tr '\\0' x").output, std::string(200'000, 'x'));
}

TEST(Shell, WritesTheInputAndAnEmptyOneIsAtEndOfFile) {
    EXPECT_EQ(shell("cat", "whole input").output, "whole input");
    EXPECT_EQ(shell("cat; echo ended", "").output, "ended\n");
}

TEST(Shell, TheStatusOfAKilledProgramIsTheSignalsNumber) {
    EXPECT_EQ(shell("kill -KILL $$").terminationStatus, 9);
}

TEST(Shell, ArgumentsAreNotInterpretedByAShell) {
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

TEST(Shell, CopiedAndMovedResultsKeepTheirText) {
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

TEST(Shell, OutputAndDataShareOneBuffer) {
    const auto result = shell("head -c 200000 /dev/zero");
    EXPECT_EQ(result.output.view().data(), result.data.view().data());
}

struct Streamed {
    Shell::StreamedResult result;
    std::string received;
    bool inWholeLines = true;
};

Streamed streamed(const std::string& script) {
    Streamed all;
    all.result = Shell::run("/bin/sh", {"-c", script}, [&](std::string_view lines) {
        all.inWholeLines =
            all.inWholeLines && (all.received.empty() || all.received.back() == '\n');
        all.received += lines;
    });
    return all;
}

TEST(StreamedShell, ReturnsTheStatusAndHandsOnBothStreamsInOrder) {
    const auto all = streamed("echo out; echo grüße >&2; printf last; exit 44");
    EXPECT_EQ(all.result.terminationStatus, 44);
    EXPECT_TRUE(all.result.isUtf8);
    EXPECT_EQ(all.received, "out\ngrüße\nlast");
    EXPECT_EQ(streamed("kill -KILL $$").result.terminationStatus, 9);
    EXPECT_EQ(streamed(":").received, "");
}

TEST(StreamedShell, AMissingProgramThrowsTheSystemsErrorAndNothingIsReceived) {
    bool received = false;
    EXPECT_THROW(static_cast<void>(Shell::run("/usr/bin/no-such-tool", {},
                                              [&](std::string_view) { received = true; })),
                 std::system_error);
    EXPECT_FALSE(received);
}

// The pause lets the receiver see the first half alone.
TEST(StreamedShell, ALineThatArrivesInPiecesIsWholeThoughTheyAreCutInsideACharacter) {
    const auto all =
        streamed("printf 'before\\ngr\\303'; sleep 0.1; printf '\\274\\303\\237e\\nafter\\n'");
    EXPECT_TRUE(all.result.isUtf8);
    EXPECT_TRUE(all.inWholeLines);
    EXPECT_EQ(all.received, "before\ngrüße\nafter\n");
}

// Three bytes to a character and no power of two to a line, so that what is read at a time ends
// anywhere.
TEST(StreamedShell, MegabytesOfLinesArriveWholeAndUnchanged) {
    const auto all = streamed("yes 'ハイランド 12345' | head -n 100000");
    EXPECT_TRUE(all.result.isUtf8);
    EXPECT_TRUE(all.inWholeLines);
    std::string expected;
    for (int line = 0; line < 100'000; ++line) {
        expected += "ハイランド 12345\n";
    }
    EXPECT_TRUE(all.received == expected);
}

TEST(StreamedShell, OneInvalidByteAtTheVeryEndMakesTheWholeNotUtf8) {
    EXPECT_FALSE(streamed("yes | head -n 100000; printf '\\377'").result.isUtf8);
    EXPECT_FALSE(streamed("yes | head -n 100000; printf 'gr\\303'").result.isUtf8);
    EXPECT_TRUE(streamed("yes | head -n 100000; printf 'gr\\303\\274'").result.isUtf8);
}

TEST(StreamedShell, NothingIsReceivedAfterTheFirstInvalidLine) {
    const auto all =
        streamed("printf 'fine\\n'; sleep 0.1; printf 'b\\377d\\n'; yes | head -n 100000");
    EXPECT_FALSE(all.result.isUtf8);
    EXPECT_EQ(all.received, "fine\n");
}

} // namespace
} // namespace kovra
