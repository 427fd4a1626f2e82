#pragma once

#include "practice-mac/stand-ins/Invocation.hpp"

namespace practice {

/// Runs the host's own program of the call's name, with the given arguments, on the same standard
/// streams, and waits for it. Gives its status, or 128 and the signal's number.
int runRealTool(const Invocation& call, const std::vector<std::string>& arguments);

} // namespace practice
