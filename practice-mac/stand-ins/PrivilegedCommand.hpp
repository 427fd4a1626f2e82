#pragma once

#include "practice-mac/stand-ins/Control.hpp"

#include <string>

namespace practice {

/// Runs the command with the system's shell, as this process's user, in an environment that owes
/// nothing to the caller's. Blocks until it ends; the run stands in the transcript.
Reply runPrivileged(const std::string& command);

} // namespace practice
