#include "platform/base/StandardStreams.hpp"
#include "platform/testing/ForkedProcess.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace platform {
namespace {

bool isNothing(int descriptor) {
    struct stat found{};
    struct stat nothing{};
    return ::fstat(descriptor, &found) == 0 && ::stat("/dev/null", &nothing) == 0 &&
           S_ISCHR(found.st_mode) && found.st_rdev == nothing.st_rdev;
}

TEST(StandardStreams, NothingStandsInForThoseThatAreMissing) {
    for (unsigned closed = 0; closed < 8; ++closed) {
        EXPECT_TRUE(testing::holdsInForkedProcess([closed] {
            const auto isClosed = [closed](int descriptor) {
                return (closed >> static_cast<unsigned>(descriptor) & 1U) != 0;
            };
            int ends[2] = {};
            bool held = ::pipe(ends) == 0;
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                ::dup2(ends[0], descriptor);
            }
            const int next = ::open("/dev/null", O_RDONLY);
            ::close(next);
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                if (isClosed(descriptor)) {
                    ::close(descriptor);
                }
            }
            openMissingStandardStreams();
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                held = held && isNothing(descriptor) == isClosed(descriptor) &&
                       ::fcntl(descriptor, F_GETFD) == 0;
            }
            return held && ::open("/dev/null", O_RDONLY) == next;
        })) << "closed: "
            << closed;
    }
}

} // namespace
} // namespace platform
