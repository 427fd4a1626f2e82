// Requests to end the program, from the system or the terminal. The test's own main has the
// application terminate on them, as the program's does.

#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/services/MainQueue.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace platform::appkit {
namespace {

int requested = 0;

// In the middle of a message to the display nothing may send it another.
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

// Opens a window that asks for the end while it is being drawn, and runs the application. One that
// waits for itself is ended from outside.
void runWithARequestWhileDrawing(int signal) {
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
    // A display's connection is not for two processes: the other begins anew.
    TerminationSignals() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

using TerminationSignalsDeathTest = TerminationSignals;

TEST_P(TerminationSignalsDeathTest, EndTheApplicationWhenTheWorkAtHandIsDone) {
    EXPECT_EXIT(runWithARequestWhileDrawing(GetParam()), ::testing::ExitedWithCode(0),
                "the picture is whole, .*the application ends");
}

// The application may hang, and then nobody is left who could end it.
TEST_P(TerminationSignalsDeathTest, EndTheProcessAtOnceTheSecondTime) {
    const auto requestTwice = [] {
        std::raise(GetParam());
        std::raise(GetParam());
    };
    EXPECT_EXIT(requestTwice(), ::testing::KilledBySignal(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(OfTheSystemAndTheTerminal, TerminationSignalsDeathTest,
                         ::testing::Values(SIGTERM, SIGINT));

} // namespace
} // namespace platform::appkit
