#pragma once

#include "practice-mac/stand-ins/Control.hpp"

#include <optional>
#include <string>
#include <vector>

namespace practice {

/// What a program hands over when it has the system run a command as root.
struct PrivilegedRequest {
    std::string command;
    /// Where the command runs: the caller's folder, or launchd's own when the caller's is gone.
    std::optional<std::string> folder;
    /// All that the command finds in its environment, NAME=VALUE: the caller's, as it is.
    std::vector<std::string> environment;
};

/// Has launchd run the command as root. Blocks until it ends. Throws std::runtime_error when there
/// is no launchd.
Reply askForPrivileged(const PrivilegedRequest& request);

/// launchd's side: the request that the words after the verb are.
PrivilegedRequest privilegedRequest(const std::vector<std::string>& words);

/// Runs the command with the system's shell, as this process's user. Blocks until it ends; the run
/// stands in the transcript. Throws std::system_error when the shell cannot be started there.
Reply runPrivileged(const PrivilegedRequest& request);

} // namespace practice
