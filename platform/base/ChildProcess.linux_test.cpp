#include "platform/base/ChildProcess.hpp"

#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <spawn.h>
#include <system_error>

// By means of /proc, prlimit and replaced functions of the C library, which Linux alone has.

namespace platform {
namespace {

using namespace std::string_literals;

ChildResult run(const std::string& path, const std::vector<std::string>& arguments,
                std::optional<std::string_view> input = std::nullopt) {
    return spawnAndWait({path, arguments, input});
}

ChildResult shell(const std::string& script, std::string_view input) {
    return run("/bin/sh", {"-c", script}, input);
}

constexpr std::size_t manyMegabytes = 24'000'000;

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

// The call that fails next, and its error.
struct {
    std::string call;
    int error = 0;
} failing;

// Fails as arranged; otherwise calls the C library's own function.
template <class Action, class... Arguments>
int prepare(const char* call, Arguments... arguments) {
    if (failing.call == call) {
        return failing.error;
    }
    return reinterpret_cast<Action*>(::dlsym(RTLD_NEXT, call))(arguments...);
}

// A signal set of /proc/PID/status. posix_spawn leaves the two real-time signals that the C library
// reserves for itself ignored, so they do not count.
std::uint64_t signalSet(const std::string& status, const std::string& name) {
    constexpr std::uint64_t keptByTheLibrary = std::uint64_t{3} << 31U;
    const std::size_t at = status.find(name + ":\t") + name.size() + 2;
    return std::stoull(status.substr(at, 16), nullptr, 16) & ~keptByTheLibrary;
}

TEST(ChildProcess, HasItsPathAndItsArgumentsAsItsArgumentVector) {
    EXPECT_EQ(run("/bin/cat", {"/proc/self/cmdline"}).output, "/bin/cat\0/proc/self/cmdline\0"s);
}

// Both children leave a process behind that holds their input without reading it, and that creates
// a file when it ends. The second child ends long after its output.
TEST(ChildProcess, AGrandchildThatHoldsTheInputAloneIsNotWaitedFor) {
    const std::string input(manyMegabytes, 'i');
    for (const char* end : {"exit 3", "exec >&- 2>&-; sleep 0.3; exit 3"}) {
        const testing::TemporaryFolder tree;
        const std::string hold =
            "echo $$; exec >/dev/null 2>&1; sleep 30; echo >" + tree.path("released");
        const auto ended = shell("exec 3<&0; setsid sh -c '" + hold + "' <&3 3<&- & " + end, input);
        EXPECT_FALSE(testing::isThere(tree.path("released")));
        EXPECT_EQ(ended.terminationStatus, 3);
        EXPECT_EQ(::kill(-std::stoi(ended.output), SIGKILL), 0);
    }
}

// poll fails for more descriptors than the limit of the process, which the child lowers here.
TEST(ChildProcess, WithoutPollTheRestOfTheInputIsDropped) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        const std::string input(manyMegabytes, 'i');
        const auto ended = shell("prlimit --pid $PPID --nofile=1: && wc -c && exit 5", input);
        return ended.terminationStatus == 5 && std::stoul(ended.output) < manyMegabytes &&
               ::waitpid(-1, nullptr, WNOHANG) == -1;
    }));
}

TEST(StartingAChild, ThrowsWhenItsDescriptorsCannotBeArranged) {
    const std::ptrdiff_t before = openDescriptors();
    const auto startErrorWithout = [](const char* call, ChildOutput collected) {
        failing = {call, ENOMEM};
        int code = 0;
        try {
            static_cast<void>(spawnAndWait({"/usr/bin/true", {}, std::nullopt, collected}));
        } catch (const std::system_error& error) {
            code = error.code().value();
        }
        failing = {};
        return code;
    };
    for (const char* call :
         {"posix_spawn_file_actions_adddup2", "posix_spawn_file_actions_addclosefrom_np"}) {
        EXPECT_EQ(startErrorWithout(call, ChildOutput::both), ENOMEM) << call;
    }
    EXPECT_EQ(startErrorWithout("posix_spawn_file_actions_addopen", ChildOutput::errorsOnly),
              ENOMEM);
    EXPECT_EQ(startErrorWithout("none", ChildOutput::errorsOnly), 0);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(StartingAChild, GivesItDefaultSignalDispositionsAndAnEmptyMask) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        for (const int signal : {SIGPIPE, SIGINT, SIGHUP, SIGQUIT, SIGTERM, SIGUSR1, SIGCHLD}) {
            std::signal(signal, SIG_IGN);
        }
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
        const std::string status = run("/bin/cat", {"/proc/self/status"}).output;
        return signalSet(status, "SigBlk") == 0 && signalSet(status, "SigIgn") == 0;
    }));
}

} // namespace

// These take the place of the C library's functions.
extern "C" {

int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t* actions, int from,
                                     int to) noexcept {
    return prepare<decltype(posix_spawn_file_actions_adddup2)>(__func__, actions, from, to);
}

int posix_spawn_file_actions_addopen(posix_spawn_file_actions_t* actions, int descriptor,
                                     const char* path, int flags, mode_t mode) noexcept {
    return prepare<decltype(posix_spawn_file_actions_addopen)>(__func__, actions, descriptor, path,
                                                               flags, mode);
}

int posix_spawn_file_actions_addclosefrom_np(posix_spawn_file_actions_t* actions,
                                             int from) noexcept {
    return prepare<decltype(posix_spawn_file_actions_addclosefrom_np)>(__func__, actions, from);
}

} // extern "C"

} // namespace platform
