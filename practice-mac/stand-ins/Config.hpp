#pragma once

#include "practice-mac/stand-ins/Plist.hpp"

#include <string>

namespace practice {

/// Where the launcher and the stand-ins meet; nothing in it counts as written by the run.
inline const std::string controlFolder = "/dev/practice-mac";
/// Where the practice Mac keeps what a Mac has in places that no Linux has.
inline const std::string stateFolder = "/var/db/practice-mac";
/// The host's own programs that a stand-in of the same name hides.
inline const std::string realToolsFolder = "/usr/libexec/practice-mac/real";

/// What the launcher told the tools: folders, faults, answers. Throws std::runtime_error when it
/// told nothing, which only happens outside of a practice Mac.
const Plist& toolsConfig();

/// How often this was called with the name before, over all processes of this practice Mac.
int countedBefore(const std::string& name);

} // namespace practice
