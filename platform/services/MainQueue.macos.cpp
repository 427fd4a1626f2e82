#include "platform/services/MainQueue.hpp"

#include "platform/services/CoreFoundation.macos.hpp"
#include "platform/services/DispatchExecutor.macos.hpp"

#include <dispatch/dispatch.h>

#include <cstdlib>
#include <pthread.h>

namespace platform {

Executor& mainQueue() {
    static Executor& only = *new DispatchExecutor(dispatch_get_main_queue());
    return only;
}

bool isMainThread() {
    return ::pthread_main_np() != 0;
}

// The run loop of the main thread, and not dispatch's own parking, since the input-source calls
// want the thread itself.
void runMainLoop() {
    while (true) {
        CFRunLoopRun();
    }
}

} // namespace platform
