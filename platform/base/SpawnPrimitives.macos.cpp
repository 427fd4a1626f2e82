#include "platform/base/SpawnPrimitives.hpp"

#include <array>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace platform {

namespace {

UniqueFd closedOnExec(int descriptor) {
    constexpr int firstFree = STDERR_FILENO + 1;
    UniqueFd original(descriptor);
    UniqueFd moved(::fcntl(descriptor, F_DUPFD_CLOEXEC, firstFree));
    if (!moved) {
        throw std::system_error(errno, std::generic_category(), "fcntl");
    }
    return moved;
}

} // namespace

// There is no pipe2 here. Between pipe and fcntl another thread may spawn; its child closes what
// it was not given all the same, by the flag below.
Pipe makePipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    UniqueFd writeEnd(ends[1]);
    UniqueFd readEnd = closedOnExec(ends[0]);
    return {std::move(readEnd), closedOnExec(writeEnd.release())};
}

void giveErrorForBrokenPipe(const UniqueFd& writeEnd) {
    ::fcntl(writeEnd.get(), F_SETNOSIGPIPE, 1);
}

// Closing by default closes the inherited standard input too, unless it is named.
short closeAllButStandardStreams(posix_spawn_file_actions_t& actions, bool inheritsStandardInput) {
    if (inheritsStandardInput && ::fcntl(STDIN_FILENO, F_GETFD) >= 0) {
        checkSpawnCall(::posix_spawn_file_actions_addinherit_np(&actions, STDIN_FILENO),
                       "posix_spawn_file_actions_addinherit_np");
    }
    return POSIX_SPAWN_CLOEXEC_DEFAULT;
}

} // namespace platform
