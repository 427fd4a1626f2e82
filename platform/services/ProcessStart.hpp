#pragma once

#include <string_view>

namespace platform {

/// Begins the program, first thing in main: reduces the environment, opens the standard streams
/// that are missing, makes the system's libraries ready, and changes to the root folder as soon as
/// the path of the program's bundle is known. Whatever the program runs later, as root too, gets
/// that environment and that folder and nothing else of what the program was started with.
void beginProgram(char** argv);

/// Makes the system's libraries ready for this process, and nothing else: the part of it that test
/// programs need too. Before any other call of a service.
void initializeProcess(char** argv, char** environment);

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

/// Has nothing (/dev/null) stand in for each of the three standard descriptors that this process
/// was started without. Otherwise the next files that it opens would take their numbers, and get
/// what is meant for the terminal. First thing in main, before any other thread.
void openMissingStandardStreams();

} // namespace platform
