#include "platform/base/ChildProcess.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/time.h>
#include <sys/wait.h>

namespace platform {
namespace {

using namespace std::string_literals;
using Input = std::optional<std::string_view>;

constexpr std::size_t manyMegabytes = 24'000'000;

ChildResult run(const std::string& path, const std::vector<std::string>& arguments,
                Input input = std::nullopt) {
    return spawnAndWait({path, arguments, input});
}

ChildResult shell(const std::string& script, Input input = std::nullopt) {
    return run("/bin/sh", {"-c", script}, input);
}

std::string patterned(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>(i * 31 + i / 257);
    }
    return text;
}

TEST(ChildProcess, GetsItsArgumentsUnchanged) {
    EXPECT_EQ(run("/bin/sh", {"-c", R"(shift; printf '<%s>' "$@")", "sh", "dropped", "", "a b",
                              "$HOME", "'\"`", "line\nfeed", "*", "\xFF"})
                  .output,
              "<><a b><$HOME><'\"`><line\nfeed><*><\xFF>");
}

TEST(ChildProcess, InheritsTheEnvironment) {
    ::setenv("KOVRA_TEST_WORD", "handed on", 1);
    EXPECT_EQ(shell("printf %s \"$KOVRA_TEST_WORD\"").output, "handed on");
}

TEST(ChildProcess, WritesBothStreamsIntoOneInTheOrderOfWriting) {
    EXPECT_EQ(shell("echo one; echo two >&2; echo three; echo four >&2").output,
              "one\ntwo\nthree\nfour\n");
    EXPECT_EQ(shell("echo only an error >&2").output, "only an error\n");
    EXPECT_EQ(shell(":").output, "");
}

TEST(ChildProcess, MayWriteMoreThanAPipesBuffer) {
    const auto ended = run("/usr/bin/head", {"-c", "5000000", "/dev/zero"});
    EXPECT_EQ(ended.terminationStatus, 0);
    EXPECT_EQ(ended.output, std::string(5'000'000, '\0'));
}

TEST(ChildProcess, OutputOfArbitraryBytesIsUnchanged) {
    const std::string bytes = patterned(300'000);
    EXPECT_EQ(run("/bin/cat", {}, bytes).output, bytes);
}

TEST(ChildProcess, ItsExitStatusIsTheResult) {
    EXPECT_EQ(shell("exit 0").terminationStatus, 0);
    EXPECT_EQ(shell("exit 1").terminationStatus, 1);
    EXPECT_EQ(shell("echo said; exit 255").terminationStatus, 255);
}

TEST(ChildProcess, TheStatusOfAKilledChildIsTheSignalsNumber) {
    EXPECT_EQ(shell("echo before; kill -KILL $$").terminationStatus, SIGKILL);
    EXPECT_EQ(shell("kill -TERM $$").terminationStatus, SIGTERM);
    EXPECT_EQ(shell("kill -PIPE $$").terminationStatus, SIGPIPE);
}

TEST(ChildProcess, WritingMegabytesBeforeReadingAsManyCausesNoDeadlock) {
    const std::string input(manyMegabytes, 'i');
    const auto ended = shell("head -c 24000000 /dev/zero | tr '\\0' o; wc -c", input);
    EXPECT_EQ(ended.terminationStatus, 0);
    EXPECT_EQ(ended.output, std::string(manyMegabytes, 'o') + "24000000\n");
}

TEST(ChildProcess, ManyMegabytesGoThroughItUnchanged) {
    const std::string input = patterned(manyMegabytes);
    EXPECT_TRUE(run("/bin/cat", {}, input).output == input);
}

TEST(ChildProcess, AChildThatLeavesItsInputUnreadCausesNoSigpipe) {
    const std::string input(manyMegabytes, 'i');
    EXPECT_EQ(shell("echo enough; exit 3", input).output, "enough\n");
    EXPECT_EQ(shell("exec <&-; sleep 0.1; exit 3", input).terminationStatus, 3);
    EXPECT_EQ(shell("head -c 1; exit 4", input).terminationStatus, 4);
}

TEST(ChildProcess, ABrokenPipeLeavesDispositionAndMaskOfSigpipeUnchanged) {
    struct sigaction before{};
    ::sigaction(SIGPIPE, nullptr, &before);
    EXPECT_EQ(shell("exit 3", std::string(manyMegabytes, 'i')).terminationStatus, 3);

    struct sigaction after{};
    ::sigaction(SIGPIPE, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
    sigset_t mask;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGPIPE), 0);
    sigset_t pending;
    ::sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST(ChildProcess, AChildThatClosesItsOutputStillGetsAllOfItsInput) {
    const testing::TemporaryFolder tree;
    const std::string input = patterned(2'000'000);
    const auto ended = shell("exec >&- 2>&-; exec cat >'" + tree.path("copy") + "'", input);
    EXPECT_EQ(ended.terminationStatus, 0);
    EXPECT_TRUE(testing::contentOf(tree.path("copy")) == input);
}

TEST(ChildProcess, EmptyInputIsAPipeAtEndOfFileAndAbsentInputIsInherited) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        std::array<int, 2> ends{};
        const bool made = ::pipe(ends.data()) == 0 && ::dup2(ends[0], STDIN_FILENO) == 0 &&
                          ::write(ends[1], "ours", 4) == 4 && ::close(ends[1]) == 0;
        const std::string kind = "test -p /dev/stdin && echo a pipe; cat";
        return made && shell(kind, "").output == "a pipe\n" && run("/bin/cat", {}).output == "ours";
    }));
}

TEST(ChildProcess, AGrandchildThatHoldsTheOutputIsWaitedFor) {
    EXPECT_EQ(shell("(sleep 0.3; echo late) & echo early").output, "early\nlate\n");
}

TEST(ChildProcess, AChildThatReadsItsInputLateStillGetsAllOfIt) {
    const testing::TemporaryFolder tree;
    const std::string input = patterned(2'000'000);
    const auto ended =
        shell("exec >&- 2>&-; sleep 0.3; exec cat >'" + tree.path("copy") + "'", input);
    EXPECT_EQ(ended.terminationStatus, 0);
    EXPECT_TRUE(testing::contentOf(tree.path("copy")) == input);
}

TEST(ChildProcess, InterruptedSystemCallsAreRetried) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        struct sigaction count{};
        static volatile sig_atomic_t interruptions = 0;
        count.sa_handler = [](int) { interruptions = interruptions + 1; };
        ::sigaction(SIGALRM, &count, nullptr);
        const itimerval everyMillisecond{{0, 1000}, {0, 1000}};
        ::setitimer(ITIMER_REAL, &everyMillisecond, nullptr);
        const std::string input = patterned(8'000'000);
        return run("/bin/cat", {}, input).output == input &&
               shell("sleep 0.2; exit 7").terminationStatus == 7 && interruptions > 10;
    }));
}

TEST(ChildProcess, HandsItsOutputToAReceiverPieceByPiece) {
    std::size_t pieces = 0;
    std::size_t longest = 0;
    std::size_t bytes = 0;
    const std::vector<std::string> arguments{"-c", "head -c 5000000 /dev/zero; exit 6"};
    const std::int32_t status = spawnAndWait({"/bin/sh", arguments}, [&](std::string_view piece) {
        ++pieces;
        longest = std::max(longest, piece.size());
        bytes += piece.size();
    });
    EXPECT_EQ(status, 6);
    EXPECT_EQ(bytes, 5'000'000U);
    EXPECT_GT(pieces, 1U);
    EXPECT_LE(longest, 65'536U);
}

TEST(ChildProcess, PassesOnWhatAReceiverThrowsOnceItHasEnded) {
    const std::vector<std::string> arguments{"-c", "while echo more; do :; done"};
    const auto receive = [](std::string_view) { throw std::length_error("enough"); };
    EXPECT_THROW(static_cast<void>(spawnAndWait({"/bin/sh", arguments}, receive)),
                 std::length_error);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

// At the child's signal this process begins to ignore SIGCHLD, so that the system reaps the child.
TEST(ChildProcess, AChildReapedElsewhereKeepsItsOutputAndHasAnUnknownStatus) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        std::signal(SIGUSR1, [](int) { std::signal(SIGCHLD, SIG_IGN); });
        const auto ended = shell("kill -USR1 $PPID; sleep 0.2; echo out; exit 0");
        return ended.output == "out\n" && ended.terminationStatus == ChildResult::unknownStatus;
    }));
}

} // namespace
} // namespace platform
