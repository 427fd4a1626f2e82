#include "platform/base/StandardStreams.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace platform {

// A new descriptor has the lowest number that is free.
void openMissingStandardStreams() {
    int descriptor = ::open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) {
        descriptor = ::open("/dev/null", O_RDWR);
    }
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

} // namespace platform
