#include "platform/base/ChildProcess.hpp"
#include "platform/base/UniqueFd.hpp"
#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>

namespace platform {
namespace {

using namespace std::string_literals;

ChildResult run(const std::string& path, const std::vector<std::string>& arguments = {},
                std::optional<std::string_view> input = std::nullopt) {
    return spawnAndWait({path, arguments, input});
}

// The code with which starting a program fails; 0 when it starts.
int startError(const std::string& path) {
    try {
        static_cast<void>(run(path, {}, "input"));
        return 0;
    } catch (const std::system_error& error) {
        return error.code() == std::error_code(error.code().value(), std::generic_category())
                   ? error.code().value()
                   : -1;
    }
}

// The descriptors of a child, as it lists them itself. The last is that of the listing.
const std::vector<std::string> listDescriptors{"/dev/fd/"};
constexpr const char* onlyTheStandardThree = "0\n1\n2\n3\n";

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/dev/fd/"), {});
}

TEST(StartingAChild, ThrowsTheSystemsErrorWhenThereIsNoProgram) {
    const testing::TemporaryFolder tree;
    EXPECT_EQ(startError("/no/such/program"), ENOENT);
    EXPECT_EQ(startError(""), ENOENT);
    EXPECT_EQ(startError(tree.path()), EACCES);
    EXPECT_EQ(startError(tree.file("data", "#!/bin/sh\n")), EACCES);
    EXPECT_EQ(startError(tree.path("data/inside")), ENOTDIR);
    EXPECT_EQ(startError(tree.script("orphan", "#!/no/such/interpreter\n")), ENOENT);
}

TEST(StartingAChild, DoesNotRunAFileOfAnUnknownFormatThroughAShell) {
    const testing::TemporaryFolder tree;
    EXPECT_EQ(startError(tree.script("text", "echo a shell ran this\n")), ENOEXEC);
    EXPECT_EQ(startError(tree.script("empty", "")), ENOEXEC);
}

TEST(StartingAChild, ThrowsWhenAWordHoldsAZeroCharacterAndRunsNothing) {
    const testing::TemporaryFolder tree;
    const std::string made = tree.path("made");
    EXPECT_EQ(startError("/usr/bin/true"s + '\0'), EINVAL);
    EXPECT_EQ(startError("/usr/bin/true"s + '\0' + "more"), EINVAL);
    for (const std::string& word : {made + '\0', made + '\0' + "b", "\0"s}) {
        try {
            static_cast<void>(run("/usr/bin/touch", {made, word}));
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::errc::invalid_argument);
        }
    }
    EXPECT_FALSE(testing::isThere(made));
}

TEST(StartingAChild, DoesNotSearchThePath) {
    EXPECT_EQ(startError("cat"), ENOENT);
}

TEST(StartingAChild, ThrowsWhenTheProgramMayNotBeRun) {
    const testing::TemporaryFolder tree;
    const std::string closed = tree.script("program", "#!/bin/sh\n");
    const std::string hidden = tree.script("closed/program", "#!/bin/sh\n");
    std::filesystem::permissions(tree.path(), std::filesystem::perms{0755});
    std::filesystem::permissions(closed, std::filesystem::perms{0});
    std::filesystem::permissions(tree.path("closed"), std::filesystem::perms{0});
    EXPECT_TRUE(testing::holdsInForkedProcess([&] {
        testing::becomeNobody();
        return startError(closed) == EACCES && startError(hidden) == EACCES;
    }));
}

TEST(StartingAChild, LeavesNoDescriptorAndNoZombieBehind) {
    const std::ptrdiff_t before = openDescriptors();
    EXPECT_EQ(run("/bin/cat", {}, "input").output, "input");
    EXPECT_EQ(run("/usr/bin/true").terminationStatus, 0);
    EXPECT_EQ(startError("/no/such/program"), ENOENT);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(StartingAChild, GivesItNoDescriptorBeyondTheStandardThree) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        const int inherited = ::open("/dev/null", O_RDONLY);
        return inherited > 2 && ::dup2(inherited, 50) == 50 && ::dup2(inherited, 700) == 700 &&
               run("/bin/ls", listDescriptors, "").output == onlyTheStandardThree &&
               run("/bin/ls", listDescriptors).output == onlyTheStandardThree;
    }));
}

TEST(StartingAChild, GivesItNoPipeOfAnotherChild) {
    const testing::TemporaryFolder tree;
    const std::string ready = tree.path("ready");
    std::thread other([&] {
        const std::string input(1'000'000, 'i');
        const std::string script = "echo >'" + ready + "'; sleep 0.4; cat";
        EXPECT_EQ(run("/bin/sh", {"-c", script}, input).output, input);
    });
    while (!std::filesystem::exists(ready)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(run("/bin/ls", listDescriptors, "").output, onlyTheStandardThree);
    other.join();
}

TEST(StartingAChild, WorksFromSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i) {
        threads.emplace_back([i] {
            for (int j = 0; j < 15; ++j) {
                const std::string input(1000UL * static_cast<unsigned>(i + 1), 'i');
                EXPECT_EQ(run("/bin/cat", {}, input).output, input);
                EXPECT_EQ(run("/bin/sh", {"-c", "exit 5"}).terminationStatus, 5);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(StartingAChild, GetsItsStatusThoughSigchldWasIgnored) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        std::signal(SIGCHLD, SIG_IGN);
        const bool first = run("/bin/sh", {"-c", "exit 5"}).terminationStatus == 5;
        std::signal(SIGCHLD, SIG_IGN);
        return first && run("/bin/sh", {"-c", "exit 6"}).terminationStatus == 6;
    }));
}

// Reaps every child of the process at each SIGCHLD, as a library may do.
TEST(StartingAChild, GetsItsStatusThoughALibraryReapsChildren) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        std::signal(SIGCHLD, [](int) {
            while (::waitpid(-1, nullptr, WNOHANG) > 0) {
            }
        });
        return run("/bin/sh", {"-c", "exit 5"}).terminationStatus == 5;
    }));
}

// New descriptors of a pipe may get the numbers of those that are closed.
TEST(StartingAChild, WorksWithAnyOfOurStandardDescriptorsClosed) {
    for (unsigned closed = 0; closed < 8; ++closed) {
        EXPECT_TRUE(testing::holdsInForkedProcess([closed] {
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                if ((closed >> static_cast<unsigned>(descriptor) & 1U) != 0) {
                    ::close(descriptor);
                }
            }
            const std::string script = "cat; echo out; echo err >&2";
            return run("/bin/sh", {"-c", script}, "in ").output == "in out\nerr\n" &&
                   run("/bin/sh", {"-c", "echo out; echo err >&2"}).output == "out\nerr\n";
        })) << "closed: "
            << closed;
    }
}

} // namespace
} // namespace platform
