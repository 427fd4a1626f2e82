#include "practice-mac/stand-ins/Spawn.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace practice {

namespace {

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> found;
    found.reserve(words.size() + 1);
    for (std::string& word : words) {
        found.push_back(word.data());
    }
    found.push_back(nullptr);
    return found;
}

void resetSignals(bool ignoresTermination) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    for (int number = 1; number < NSIG; ++number) {
        std::signal(number, SIG_DFL);
    }
    if (ignoresTermination) {
        std::signal(SIGTERM, SIG_IGN);
    }
}

bool becomeIdentity(const Identity& identity) {
    return setgroups(1, &identity.group) == 0 && setgid(identity.group) == 0 &&
           setuid(identity.user) == 0;
}

bool detach(const ProcessOptions& options) {
    setsid();
    const int nothing = open("/dev/null", O_RDWR);
    if (nothing < 0) {
        return false;
    }
    dup2(nothing, STDIN_FILENO);
    dup2(options.output < 0 ? nothing : options.output, STDOUT_FILENO);
    dup2(options.error < 0 ? nothing : options.error, STDERR_FILENO);
    if (nothing > STDERR_FILENO) {
        close(nothing);
    }
    return true;
}

/// In the child: becomes the program. Returns only when that fails, errno says why.
void become(const ProcessOptions& options, char** arguments, char** environment) {
    resetSignals(options.ignoresTermination);
    if (options.detached && !detach(options)) {
        return;
    }
    if (options.identity && !becomeIdentity(*options.identity)) {
        return;
    }
    if (!options.folder.empty() && chdir(options.folder.c_str()) != 0) {
        return;
    }
    execve(options.program.c_str(), arguments, environment);
}

} // namespace

pid_t spawn(const ProcessOptions& options) {
    std::vector<std::string> words = options.arguments;
    words.insert(words.begin(), options.name.empty() ? options.program : options.name);
    std::vector<std::string> settings = options.environment.value_or(std::vector<std::string>());
    std::vector<char*> arguments = pointers(words);
    std::vector<char*> environment = pointers(settings);
    std::array<int, 2> report{};
    if (pipe2(report.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), options.program);
    }
    const pid_t child = fork();
    if (child == 0) {
        become(options, arguments.data(), options.environment ? environment.data() : environ);
        const int error = errno;
        static_cast<void>(write(report[1], &error, sizeof error));
        _exit(127);
    }
    int error = child < 0 ? errno : 0;
    close(report[1]);
    // The pipe is close-on-exec: end of file without data means that exec has succeeded.
    const ssize_t told = read(report[0], &error, sizeof error);
    close(report[0]);
    if (child < 0 || told > 0) {
        if (child > 0) {
            waitFor(child);
        }
        throw std::system_error(error, std::generic_category(), options.program);
    }
    return child;
}

int waitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

int exitStatus(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

} // namespace practice
