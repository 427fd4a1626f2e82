#include "platform/appkit/RepeatingTimer.hpp"
#include "platform/appkit/testing/RunLoop.hpp"
#include "platform/foundation/Conversions.hpp"

#include <gtest/gtest.h>

namespace platform::appkit {
namespace {

using testing::served;

TEST(RepeatingTimer, TicksUntilItIsStoppedAndAgainAfterARestart) {
    int ticks = 0;
    RepeatingTimer timer([&ticks] { ++ticks; });
    EXPECT_FALSE(timer.isRunning());
    timer.start();
    timer.start();
    EXPECT_TRUE(served([&ticks] { return ticks >= 3; }));
    timer.stop();
    const int stopped = ticks;
    int others = 0;
    RepeatingTimer other([&others] { ++others; });
    other.start();
    EXPECT_TRUE(served([&others] { return others >= 3; }));
    EXPECT_EQ(ticks, stopped);
    timer.start();
    EXPECT_TRUE(served([&] { return ticks > stopped; }));
}

TEST(RepeatingTimer, DoesNotTickAfterItsDestruction) {
    int ticks = 0;
    {
        RepeatingTimer timer([&ticks] { ++ticks; });
        timer.start();
        EXPECT_TRUE(served([&ticks] { return ticks >= 1; }));
    }
    const int gone = ticks;
    int others = 0;
    RepeatingTimer other([&others] { ++others; });
    other.start();
    EXPECT_TRUE(served([&others] { return others >= 3; }));
    EXPECT_EQ(ticks, gone);
}

// Event tracking is the mode of an open menu, modal panel that of a dialog.
TEST(RepeatingTimer, TicksInEachModeOfTheApplicationsLoop) {
    for (NSString* mode :
         {NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode}) {
        int ticks = 0;
        RepeatingTimer timer([&ticks] { ++ticks; });
        timer.start();
        EXPECT_TRUE(served([&ticks] { return ticks >= 2; }, mode)) << foundation::toString(mode);
    }
}

TEST(RepeatingTimer, TicksSixtyTimesASecond) {
    using Now = ClassMethod<"NSDate", "timeIntervalSinceReferenceDate", double()>;
    RepeatingTimer timer([] {});
    const double before = Now::send();
    timer.start();
    const double after = Now::send();
    // The fire date of the run loop's next timer.
    auto* next = InstanceMethod<"NSRunLoop", "limitDateForMode:", NSObject*(NSString*)>::send(
        foundation::NSRunLoop::currentRunLoop(), NSModalPanelRunLoopMode);
    const double due =
        InstanceMethod<"NSDate", "timeIntervalSinceReferenceDate", double()>::send(next);
    EXPECT_GE(due, before + 1.0 / 60 - 1e-6);
    EXPECT_LE(due, after + 1.0 / 60 + 1e-6);
}

} // namespace
} // namespace platform::appkit
