#include "platform/appkit/ApplicationStart.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/ProcessStart.hpp"

#include <gmock/gmock.h>

#include <cstdio>

extern "C" char** environ;

int main(int argc, char** argv) {
    platform::initializeProcess(argv, environ);
    const platform::objc::AutoreleasePool pool;
    testing::InitGoogleMock(&argc, argv);
    if (platform::appkit::startApplication() == nullptr) {
        std::fputs("There is no display.\n", stderr);
        return 1;
    }
    return RUN_ALL_TESTS();
}
