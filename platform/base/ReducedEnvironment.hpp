#pragma once

#include <string_view>

namespace platform {

/// Leaves of this process's environment what the program and the system's libraries need, and sets
/// PATH to the system's own folders. The system hands the whole environment to the programs that it
/// runs for us as root, and shells take orders from it before their script's first line; so what is
/// not on the list goes, whatever it is, and so do values that a shell could take for a function or
/// that hold control characters. Each variable is there once afterwards: the first of a name
/// counts, as it does for getenv.
///
/// First thing in main, before any other thread.
void reduceEnvironment();

/// Whether a variable of that name is kept on this system alone.
[[nodiscard]] bool isKeptOnThisSystem(std::string_view name);

} // namespace platform
