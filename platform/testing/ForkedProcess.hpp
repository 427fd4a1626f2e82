#pragma once

#include <cstdio>
#include <exception>
#include <sys/wait.h>
#include <unistd.h>

namespace platform::testing {

/// Runs a check in a forked process, for what would spoil this one: closed standard descriptors,
/// signal dispositions, another user. True when the check returns true. Call it before the test
/// starts any thread.
template <class Check>
[[nodiscard]] bool holdsInForkedProcess(Check check) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        bool held = false;
        try {
            held = check();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "in the forked process: %s\n", error.what());
        }
        ::_exit(held ? 0 : 1);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Drops root's privileges, for which file modes do not count. In a forked process only.
inline void becomeNobody() {
    constexpr uid_t nobody = 65534;
    if (::getuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) {
        std::perror("setuid");
        ::_exit(2);
    }
}

} // namespace platform::testing
