#pragma once

#include "practice-mac/stand-ins/Plist.hpp"

#include <string>

namespace practice {

/// Shared by the launcher and the stand-ins; nothing in it counts as written by the run.
inline const std::string controlFolder = "/dev/practice-mac";
/// State that a Mac keeps in its own databases.
inline const std::string stateFolder = "/var/db/practice-mac";
/// The host's own programs that a stand-in of the same name hides.
inline const std::string realToolsFolder = "/usr/libexec/practice-mac/real";

/// The launcher's settings for the tools: folders, faults, answers. Throws std::runtime_error when
/// there are none, which is so outside of a practice Mac.
const Plist& toolsConfig();

/// How often this was called with the name before, over all processes of this practice Mac.
int countedBefore(const std::string& name);

} // namespace practice
