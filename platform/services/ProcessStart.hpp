#pragma once

namespace platform {

/// Begins the program, first thing in main: reduces the environment, opens the standard streams
/// that are missing, makes the system's libraries ready, and changes to the root folder as soon as
/// the path of the program's bundle is known. Whatever the program runs later, as root too, gets
/// that environment and that folder and nothing else of what the program was started with.
void beginProgram(char** argv);

/// Makes the system's libraries ready for this process, and nothing else: the part of it that test
/// programs need too. Before any other call of a service.
void initializeProcess(char** argv, char** environment);

} // namespace platform
