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

    void connectToDevNull(int to) {
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

// While SIGCHLD is ignored, the system reaps children and their status is lost; a process inherits
// that from its parent. A library may handle the signal and wait for every child of the process, as
// GNUstep's task class does. Both may be set at any time.
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
        : pipe_(std::move(pipe)), receive_(receive), buffer_(bufferSize) {}

    [[nodiscard]] bool isOpen() const { return static_cast<bool>(pipe_); }

    [[nodiscard]] int descriptor() const { return pipe_.get(); }

    void readOnce() {
        const ssize_t count =
            retryInterrupted([&] { return ::read(pipe_.get(), buffer_.data(), buffer_.size()); });
        if (count <= 0) {
            pipe_.reset();
        } else {
            receive_({buffer_.data(), static_cast<std::size_t>(count)});
        }
    }

  private:
    // As much as a pipe holds.
    static constexpr std::size_t bufferSize = 64UL * 1024;

    UniqueFd pipe_;
    const OutputReceiver& receive_;
    std::vector<char> buffer_;
};

// Writes the whole input. When the child stops reading, the rest of the input is dropped.
class Feeder {
  public:
    Feeder(UniqueFd pipe, std::string_view input) : pipe_(std::move(pipe)), rest_(input) {
        giveErrorForBrokenPipe(pipe_);
        ::fcntl(pipe_.get(), F_SETFL, ::fcntl(pipe_.get(), F_GETFL) | O_NONBLOCK);
        closeWhenDone();
    }

    [[nodiscard]] bool isOpen() const { return static_cast<bool>(pipe_); }

    [[nodiscard]] int descriptor() const { return pipe_.get(); }

    void stop() { pipe_.reset(); }

    void writeOnce() {
        const ssize_t count =
            retryInterrupted([&] { return ::write(pipe_.get(), rest_.data(), rest_.size()); });
        if (count >= 0) {
            rest_.remove_prefix(static_cast<std::size_t>(count));
            closeWhenDone();
        } else if (errno != EAGAIN) {
            pipe_.reset();
        }
    }

  private:
    void closeWhenDone() {
        if (rest_.empty()) {
            pipe_.reset();
        }
    }

    UniqueFd pipe_;
    std::string_view rest_;
};

// Waits for a started child also when an exception is thrown, so that no zombie stays behind.
class StartedChild {
  public:
    explicit StartedChild(pid_t child) : child_(child) {}

    ~StartedChild() {
        if (child_ > 0) {
            static_cast<void>(wait());
        }
    }

    StartedChild(const StartedChild&) = delete;
    StartedChild& operator=(const StartedChild&) = delete;

    [[nodiscard]] bool hasEnded() { return child_ == 0 || reap(WNOHANG); }

    [[nodiscard]] std::int32_t wait() {
        if (child_ > 0) {
            reap(0);
        }
        return status_;
    }

  private:
    // The child may have been reaped elsewhere in this process all the same; then its status is
    // unknown.
    bool reap(int options) {
        int reported = 0;
        const pid_t ended = retryInterrupted([&] { return ::waitpid(child_, &reported, options); });
        if (ended == 0) {
            return false;
        }
        if (ended > 0) {
            status_ = WIFSIGNALED(reported) ? WTERMSIG(reported) : WEXITSTATUS(reported);
        }
        child_ = 0;
        return true;
    }

    pid_t child_;
    std::int32_t status_ = ChildResult::unknownStatus;
};

// Writes and reads at the same time, so that a child which writes much before it has read its input
// causes no deadlock. When the child has ended, the rest of the input is dropped, also when another
// process still holds the pipe. A child that has closed its output but not its input is waited for
// by a timeout, since poll cannot report a child's end on every system; this is rare. When poll
// fails, the rest of the input is dropped.
void exchange(Feeder& feeder, Drain& drain, StartedChild& child) {
    constexpr int noTimeout = -1;
    constexpr int pollInterval = 20; // milliseconds
    const BlockedSigpipe blocked;
    while (feeder.isOpen()) {
        std::array<pollfd, 2> waiting{pollfd{feeder.descriptor(), POLLOUT, 0},
                                      pollfd{drain.descriptor(), POLLIN, 0}};
        const int timeout = drain.isOpen() ? noTimeout : pollInterval;
        const int due =
            retryInterrupted([&] { return ::poll(waiting.data(), waiting.size(), timeout); });
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
        actions.connectToDevNull(STDOUT_FILENO);
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
