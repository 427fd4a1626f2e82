#include "platform/base/SpawnPrimitives.hpp"

#include <array>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace platform {

namespace {

UniqueFd aboveStandardStreams(UniqueFd descriptor) {
    constexpr int firstFree = STDERR_FILENO + 1;
    if (descriptor.get() >= firstFree) {
        return descriptor;
    }
    UniqueFd moved(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, firstFree));
    if (!moved) {
        throw std::system_error(errno, std::generic_category(), "fcntl");
    }
    return moved;
}

} // namespace

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    UniqueFd readEnd(ends[0]);
    UniqueFd writeEnd(ends[1]);
    return {aboveStandardStreams(std::move(readEnd)), aboveStandardStreams(std::move(writeEnd))};
}

// The signal goes to the thread that writes.
void giveErrorForBrokenPipe(const UniqueFd&) {}

// Whoever started this program may have left descriptors open in it, and so may a library.
short closeAllButStandardStreams(posix_spawn_file_actions_t& actions, bool) {
    checkSpawnCall(::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1),
                   "posix_spawn_file_actions_addclosefrom_np");
    return 0;
}

} // namespace platform
