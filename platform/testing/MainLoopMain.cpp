#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/ProcessStart.hpp"
#include "platform/services/Queues.hpp"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

extern "C" char** environ;

int main(int argc, char** argv) {
    platform::initializeProcess(argv, environ);
    const platform::objc::AutoreleasePool pool;
    testing::InitGoogleMock(&argc, argv);
    std::thread([] {
        const platform::objc::AutoreleasePool threadPool;
        const int failed = RUN_ALL_TESTS();
        std::fflush(nullptr);
        std::exit(failed);
    }).detach();
    platform::runMainLoop();
}
