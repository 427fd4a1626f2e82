// SIGTERM and SIGINT. The test's main starts the application as the program does, and so installs
// the signal handlers.

#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/services/Queues.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace platform::appkit {
namespace {

int requested = 0;

// While a view draws, the display's connection is in use.
void drawRect(NSView*, NSRect) {
    if (const int signal = std::exchange(requested, 0)) {
        std::raise(signal);
        std::fputs("the picture is whole, ", stderr);
    }
}

void willTerminate(NSObject*, NSObject*) {
    std::fputs("the application ends", stderr);
}

NSObject* make(Class of) {
    return objc::sendMessage<NSObject*>(of, objc::selector<"new">());
}

// Opens a window that raises the signal while it is being drawn, and runs the application. The
// alarm ends a process that deadlocks.
void runWithASignalWhileDrawing(int signal) {
    ::alarm(60);
    requested = signal;
    NSApplication* application = NSApplication::sharedApplication();
    application->setDelegate(make(objc::ClassBuilder("KovraTestDelegate", "NSObject")
                                      .method<willTerminate>("applicationWillTerminate:")
                                      .registered()));
    auto* view = static_cast<NSView*>(make(
        objc::ClassBuilder("KovraTestView", "NSView").method<drawRect>("drawRect:").registered()));
    auto* window = NSWindow::alloc()->initWithContentRect({{0, 0}, {60, 40}}, NSWindow::titled,
                                                          NSWindow::backingBuffered, false);
    window->setContentView(view);
    window->makeKeyAndOrderFront(nullptr);
    application->run();
}

class TerminationSignals : public ::testing::TestWithParam<int> {
  protected:
    // A forked process cannot share the connection to the display: the test starts a new one.
    TerminationSignals() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

using TerminationSignalsDeathTest = TerminationSignals;

TEST_P(TerminationSignalsDeathTest, TerminateTheApplicationAfterTheCurrentEvent) {
    EXPECT_EXIT(runWithASignalWhileDrawing(GetParam()), ::testing::ExitedWithCode(0),
                "the picture is whole, .*the application ends");
}

// For an application that hangs.
TEST_P(TerminationSignalsDeathTest, EndTheProcessAtOnceTheSecondTime) {
    const auto requestTwice = [] {
        std::raise(GetParam());
        std::raise(GetParam());
    };
    EXPECT_EXIT(requestTwice(), ::testing::KilledBySignal(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(SigtermAndSigint, TerminationSignalsDeathTest,
                         ::testing::Values(SIGTERM, SIGINT));

} // namespace
} // namespace platform::appkit
