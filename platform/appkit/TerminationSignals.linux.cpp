#include "platform/appkit/TerminationSignals.linux.hpp"

#include "platform/base/SpawnPrimitives.hpp"
#include "platform/services/Queues.hpp"

#include <cerrno>
#include <csignal>
#include <thread>
#include <unistd.h>
#include <utility>

namespace platform::appkit {

namespace {

int requests = -1;

// A signal handler may do little more than write into a pipe.
void request(int) {
    const int before = errno;
    [[maybe_unused]] const auto written = ::write(requests, "", 1);
    errno = before;
}

// Asked before its own loop runs, the application would do nothing and forget; and to put a window
// on the screen GNUstep already runs a loop, which serves the main queue.
void terminateWhenRunning(NSApplication* application) {
    if (InstanceMethod<"NSApplication", "isRunning", Bool()>::send(application) != NO) {
        application->terminate(nullptr);
    } else {
        mainQueue().post([application] { terminateWhenRunning(application); });
    }
}

} // namespace

// GNUstep terminates the application inside of its signal handler, wherever the main thread happens
// to be; in the middle of a message to the display it would wait for itself for ever.
void terminateOnSignals(NSApplication* application) {
    Pipe pipe = makePipe();
    requests = pipe.writeEnd.release();
    std::thread([application, arrivals = std::move(pipe.readEnd)] {
        char arrived = 0;
        if (retryInterrupted([&] { return ::read(arrivals.get(), &arrived, 1); }) == 1) {
            mainQueue().post([application] { terminateWhenRunning(application); });
        }
    }).detach();

    struct sigaction action{};

    action.sa_handler = request;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGTERM, SIGINT}) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace platform::appkit
