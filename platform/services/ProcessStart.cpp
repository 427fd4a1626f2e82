#include "platform/services/ProcessStart.hpp"

#include "platform/base/ReducedEnvironment.hpp"
#include "platform/base/StandardStreams.hpp"
#include "platform/services/MainBundle.hpp"

#include <unistd.h>

// POSIX leaves the declaration to the program, and Linux makes one of its own.
extern "C" char** environ; // NOLINT(readability-redundant-declaration)

namespace platform {

void beginProgram(char** argv) {
    reduceEnvironment();
    openMissingStandardStreams();
    initializeProcess(argv, environ);
    // The system finds the bundle by the path that the program was started with, which may be
    // relative to the folder that it was started in, and keeps what it found.
    static_cast<void>(mainBundlePath());
    // Everybody may enter the root folder.
    [[maybe_unused]] const int status = ::chdir("/");
}

} // namespace platform
