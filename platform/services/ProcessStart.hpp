#pragma once

#include <string_view>

namespace platform {

// What a program does first in main, before it has any other thread.

/// Reduces the environment, opens the standard streams that are closed, initializes the system's
/// libraries, and changes to the root folder once the path of the program's bundle is known. The
/// child processes, root's too, inherit that environment and folder and nothing else of what the
/// program was started with.
void beginProgram(char** argv);

/// Initializes the system's libraries and does nothing else, for test programs. Before any other
/// function of the services.
void initializeProcess(char** argv, char** environment);

/// Keeps of this process's environment what the program and the system's libraries need, and sets
/// PATH to the system's own folders. The system passes the whole environment to the programs that
/// it runs for us as root, and a shell acts on some variables before its script's first line; so
/// whatever is not on the list is dropped, and so are values that a shell could take for a function
/// or that have control characters. Of several variables with one name the first is kept, which is
/// the one that getenv finds.
void reduceEnvironment();

/// Whether a variable of that name is kept on this system and not on the other.
[[nodiscard]] bool isKeptOnThisSystem(std::string_view name);

/// Opens /dev/null as each of the three standard descriptors that is closed. Otherwise files that
/// are opened later would get their numbers, and the output that is meant for the terminal.
void openMissingStandardStreams();

} // namespace platform
