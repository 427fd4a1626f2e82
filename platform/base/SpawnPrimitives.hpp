#pragma once

#include "platform/base/UniqueFd.hpp"

#include <spawn.h>
#include <string>
#include <system_error>

namespace platform {

/// Throws what a call that prepares or makes a spawn gave back, unless it is 0: such calls return
/// their error and leave errno alone.
inline void checkSpawnCall(int error, const std::string& what) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

struct Pipe {
    UniqueFd readEnd;
    UniqueFd writeEnd;
};

/// A pipe whose ends are closed on exec and numbered above the three standard descriptors, so
/// that wiring one up as a child's standard stream can never overwrite the other.
/// Throws std::system_error. Any thread.
[[nodiscard]] Pipe makePipe();

/// Where the system sends SIGPIPE to the whole process, not to the writing thread as
/// `BlockedSigpipe` expects, makes writes to this pipe fail without a signal. Any thread.
void giveErrorForBrokenPipe(const UniqueFd& writeEnd);

/// What spawning needs beyond POSIX so that a child inherits nothing but its standard streams:
/// adds to the actions, after those that wire the streams up, and gives the attribute flags to set
/// besides. Throws std::system_error.
[[nodiscard]] short closeAllButStandardStreams(posix_spawn_file_actions_t& actions,
                                               bool inheritsStandardInput);

} // namespace platform
