#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace practice {

/// Who a process runs as.
struct Identity {
    uid_t user;
    gid_t group;
};

struct ProcessOptions {
    std::string program;
    std::vector<std::string> arguments;
    /// What the program is told that it is called; its path when empty.
    std::string name;
    /// The whole environment, NAME=VALUE; the caller's own when absent.
    std::optional<std::vector<std::string>> environment;
    /// The caller's own identity when absent.
    std::optional<Identity> identity;
    std::string folder;
    /// In a session of its own, with nothing to read, and nowhere to print but to these two.
    bool detached = false;
    int output = -1;
    int error = -1;
    /// Ignores SIGTERM from its first moment.
    bool ignoresTermination = false;
};

/// Starts a process with default signals and returns once it runs its program. Throws
/// std::system_error when it cannot be started, with the reason.
pid_t spawn(const ProcessOptions& options);

/// Waits for the child's end and gives its wait status.
int waitFor(pid_t child);

/// A wait status as a shell gives it: the exit status, or 128 and the signal's number.
int exitStatus(int waitStatus);

} // namespace practice
