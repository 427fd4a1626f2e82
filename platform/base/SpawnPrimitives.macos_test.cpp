// How a Mac's children are kept from inheriting what is not theirs, on stand-ins for the calls that
// this system lacks.

#include "platform/base/SpawnPrimitives.hpp"

#include "platform/testing/ForkedProcess.hpp"
#include "platform/testing/darwin/Darwin.hpp"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace platform {

std::vector<int> inherited;
std::vector<int> withoutSignal;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SpawnPrimitivesOfAMac : public ::testing::Test {
  protected:
    SpawnPrimitivesOfAMac() {
        inherited.clear();
        withoutSignal.clear();
        ::posix_spawn_file_actions_init(&actions_);
    }

    ~SpawnPrimitivesOfAMac() override { ::posix_spawn_file_actions_destroy(&actions_); }

    posix_spawn_file_actions_t actions_{};
};

TEST_F(SpawnPrimitivesOfAMac, CloseWhateverIsNotNamed) {
    EXPECT_EQ(closeAllButStandardStreams(actions_, false), POSIX_SPAWN_CLOEXEC_DEFAULT);
    EXPECT_THAT(inherited, IsEmpty());
    EXPECT_EQ(closeAllButStandardStreams(actions_, true), POSIX_SPAWN_CLOEXEC_DEFAULT);
    EXPECT_THAT(inherited, ElementsAre(STDIN_FILENO));
}

TEST_F(SpawnPrimitivesOfAMac, NameNoStandardInputThatIsNotOpen) {
    EXPECT_TRUE(testing::holdsInForkedProcess([this] {
        ::close(STDIN_FILENO);
        return closeAllButStandardStreams(actions_, true) == POSIX_SPAWN_CLOEXEC_DEFAULT &&
               inherited.empty();
    }));
}

TEST_F(SpawnPrimitivesOfAMac, MakePipesAboveTheStandardStreamsThatNoOtherChildGets) {
    EXPECT_TRUE(testing::holdsInForkedProcess([] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        const Pipe pipe = makePipe();
        const int ends[] = {pipe.readEnd.get(), pipe.writeEnd.get()};
        bool held = ::write(ends[1], "x", 1) == 1;
        for (const int end : ends) {
            held = held && end > STDERR_FILENO && (::fcntl(end, F_GETFD) & FD_CLOEXEC) != 0;
        }
        char read = 0;
        return held && ::read(ends[0], &read, 1) == 1 && ::fcntl(STDIN_FILENO, F_GETFD) < 0 &&
               ::fcntl(STDOUT_FILENO, F_GETFD) < 0;
    }));
}

TEST_F(SpawnPrimitivesOfAMac, HaveABrokenPipeGiveAnErrorAndNoSignal) {
    const Pipe pipe = makePipe();
    giveErrorForBrokenPipe(pipe.writeEnd);
    EXPECT_THAT(withoutSignal, ElementsAre(pipe.writeEnd.get()));
}

} // namespace
} // namespace platform

int darwinFcntl(int descriptor, int command, int argument) {
    if (command == F_SETNOSIGPIPE) {
        if (argument == 1) {
            platform::withoutSignal.push_back(descriptor);
        }
        return 0;
    }
    return ::fcntl(descriptor, command, argument);
}

int posix_spawn_file_actions_addinherit_np(void*, int descriptor) {
    platform::inherited.push_back(descriptor);
    return 0;
}
