#include "platform/base/ChildProcess.hpp"

#include "platform/base/SignalMask.hpp"
#include "platform/base/SpawnPrimitives.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>
#include <utility>
#include <vector>

// POSIX leaves the declaration to the program, and Linux makes one of its own.
extern "C" char** environ; // NOLINT(readability-redundant-declaration)

namespace platform {

namespace {

class SpawnActions {
  public:
    SpawnActions() {
        checkSpawnCall(::posix_spawn_file_actions_init(&value), "posix_spawn_file_actions_init");
    }

    ~SpawnActions() { ::posix_spawn_file_actions_destroy(&value); }

    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    void connect(const UniqueFd& from, int to) {
        checkSpawnCall(::posix_spawn_file_actions_adddup2(&value, from.get(), to),
                       "posix_spawn_file_actions_adddup2");
    }

    void connectToNothing(int to) {
        checkSpawnCall(::posix_spawn_file_actions_addopen(&value, to, "/dev/null", O_WRONLY, 0),
                       "posix_spawn_file_actions_addopen");
    }

    posix_spawn_file_actions_t value{};
};

class SpawnAttributes {
  public:
    explicit SpawnAttributes(short systemFlags) {
        checkSpawnCall(::posix_spawnattr_init(&value), "posix_spawnattr_init");
        sigset_t none;
        sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&value, &none);
        sigset_t resettable;
        sigfillset(&resettable);
        sigdelset(&resettable, SIGKILL);
        sigdelset(&resettable, SIGSTOP);
        ::posix_spawnattr_setsigdefault(&value, &resettable);
        ::posix_spawnattr_setflags(&value, static_cast<short>(POSIX_SPAWN_SETSIGMASK |
                                                              POSIX_SPAWN_SETSIGDEF | systemFlags));
    }

    ~SpawnAttributes() { ::posix_spawnattr_destroy(&value); }

    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    posix_spawnattr_t value{};
};

// A parent that ignores SIGCHLD never learns how its children ended: the system reaps them
// unseen. Our own parent may have left it so. And a library may catch it and wait for every child
// of the process, as GNUstep's task class does once it is told of one: then how ours ended is lost
// to it. Both may come at any time.
void keepChildrenWaitable() {
    struct sigaction current{};
    if (::sigaction(SIGCHLD, nullptr, &current) == 0 && current.sa_handler != SIG_DFL) {
        std::signal(SIGCHLD, SIG_DFL);
    }
}

pid_t spawn(const ChildRequest& request, SpawnActions& actions, short systemFlags) {
    if (!hasNoNul(request.executablePath) || !std::ranges::all_of(request.arguments, hasNoNul)) {
        checkSpawnCall(EINVAL, request.executablePath);
    }
    std::vector<char*> argv;
    argv.reserve(request.arguments.size() + 2);
    argv.push_back(const_cast<char*>(request.executablePath.c_str()));
    for (const std::string& argument : request.arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);

    const SpawnAttributes attributes(systemFlags);
    pid_t child = 0;
    checkSpawnCall(::posix_spawn(&child, request.executablePath.c_str(), &actions.value,
                                 &attributes.value, argv.data(), environ),
                   request.executablePath);
    return child;
}

// Hands what arrives on a pipe to a receiver, and closes the pipe at its end.
class Drain {
  public:
    Drain(UniqueFd pipe, const OutputReceiver& receive)
        : pipe(std::move(pipe)), receive(receive), buffer(bufferSize) {}

    [[nodiscard]] bool isOpen() const { return static_cast<bool>(pipe); }

    [[nodiscard]] int descriptor() const { return pipe.get(); }

    void readOnce() {
        const ssize_t count =
            retryInterrupted([&] { return ::read(pipe.get(), buffer.data(), buffer.size()); });
        if (count <= 0) {
            pipe.reset();
        } else {
            receive({buffer.data(), static_cast<std::size_t>(count)});
        }
    }

  private:
    // As much as a pipe holds.
    static constexpr std::size_t bufferSize = 64UL * 1024;

    UniqueFd pipe;
    const OutputReceiver& receive;
    std::vector<char> buffer;
};

// The one write of the whole input. A child that has stopped reading breaks the pipe; that is
// its right, and the rest of the input is dropped.
class Feeder {
  public:
    Feeder(UniqueFd pipe, std::string_view input) : pipe(std::move(pipe)), rest(input) {
        giveErrorForBrokenPipe(this->pipe);
        ::fcntl(this->pipe.get(), F_SETFL, ::fcntl(this->pipe.get(), F_GETFL) | O_NONBLOCK);
        closeWhenDone();
    }

    [[nodiscard]] bool isOpen() const { return static_cast<bool>(pipe); }

    [[nodiscard]] int descriptor() const { return pipe.get(); }

    void stop() { pipe.reset(); }

    void writeOnce() {
        const ssize_t count =
            retryInterrupted([&] { return ::write(pipe.get(), rest.data(), rest.size()); });
        if (count >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(count));
            closeWhenDone();
        } else if (errno != EAGAIN) {
            pipe.reset();
        }
    }

  private:
    void closeWhenDone() {
        if (rest.empty()) {
            pipe.reset();
        }
    }

    UniqueFd pipe;
    std::string_view rest;
};

// A child that was started is waited for whatever happens, so that none stays behind dead.
class StartedChild {
  public:
    explicit StartedChild(pid_t child) : child(child) {}

    ~StartedChild() {
        if (child > 0) {
            static_cast<void>(wait());
        }
    }

    StartedChild(const StartedChild&) = delete;
    StartedChild& operator=(const StartedChild&) = delete;

    [[nodiscard]] bool hasEnded() { return child == 0 || reap(WNOHANG); }

    [[nodiscard]] std::int32_t wait() {
        if (child > 0) {
            reap(0);
        }
        return status;
    }

  private:
    // Somebody in this process may have had the system reap the child unseen after all, or have
    // waited for it; then it counts as failed.
    bool reap(int options) {
        int reported = 0;
        const pid_t ended = retryInterrupted([&] { return ::waitpid(child, &reported, options); });
        if (ended == 0) {
            return false;
        }
        if (ended > 0) {
            status = WIFSIGNALED(reported) ? WTERMSIG(reported) : WEXITSTATUS(reported);
        }
        child = 0;
        return true;
    }

    pid_t child;
    std::int32_t status = ChildResult::unknownStatus;
};

// Feeds and drains at the same time, so that a child which writes much before it has read all of
// its input cannot lock up with us. A child that is gone reads no more: whoever it left its input
// to gets what the pipe holds. No descriptor tells of a child's end on every system; once the
// output has ended and the input alone is open, which is rare, the child is looked at from time to
// time. Where the system cannot say which of the two is due, the rest of the input is dropped, as
// for a child that has stopped reading.
void exchange(Feeder& feeder, Drain& drain, StartedChild& child) {
    constexpr int forEver = -1;
    constexpr int aWhile = 20; // milliseconds
    const BrokenPipeSilence silence;
    while (feeder.isOpen()) {
        std::array<pollfd, 2> waiting{pollfd{feeder.descriptor(), POLLOUT, 0},
                                      pollfd{drain.descriptor(), POLLIN, 0}};
        const int patience = drain.isOpen() ? forEver : aWhile;
        const int due =
            retryInterrupted([&] { return ::poll(waiting.data(), waiting.size(), patience); });
        if (due < 0 || (due == 0 && child.hasEnded())) {
            feeder.stop();
            return;
        }
        if (drain.isOpen() && waiting[1].revents != 0) {
            drain.readOnce();
        }
        if (waiting[0].revents != 0) {
            feeder.writeOnce();
        }
    }
}

} // namespace

std::int32_t spawnAndWait(const ChildRequest& request, const OutputReceiver& receive) {
    keepChildrenWaitable();
    Pipe output = makePipe();
    Pipe input;
    SpawnActions actions;
    if (request.standardInput) {
        input = makePipe();
        actions.connect(input.readEnd, STDIN_FILENO);
    }
    if (request.collected == ChildOutput::both) {
        actions.connect(output.writeEnd, STDOUT_FILENO);
    } else {
        actions.connectToNothing(STDOUT_FILENO);
    }
    actions.connect(output.writeEnd, STDERR_FILENO);
    const short systemFlags = closeAllButStandardStreams(actions.value, !request.standardInput);

    StartedChild child(spawn(request, actions, systemFlags));
    output.writeEnd.reset();
    input.readEnd.reset();

    Drain drain(std::move(output.readEnd), receive);
    if (request.standardInput) {
        Feeder feeder(std::move(input.writeEnd), *request.standardInput);
        exchange(feeder, drain, child);
    }
    while (drain.isOpen()) {
        drain.readOnce();
    }
    return child.wait();
}

ChildResult spawnAndWait(const ChildRequest& request) {
    ChildResult result;
    result.terminationStatus =
        spawnAndWait(request, [&](std::string_view piece) { result.output.append(piece); });
    return result;
}

} // namespace platform
