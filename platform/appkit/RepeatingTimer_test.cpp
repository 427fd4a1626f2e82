#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/RepeatingTimer.hpp"

#include <gtest/gtest.h>

namespace platform::appkit {
namespace {

// Serves the run loop until the condition holds, five seconds at most.
template <class Condition>
bool served(Condition condition) {
    auto* limit =
        ClassMethod<"NSDate", "dateWithTimeIntervalSinceNow:", NSObject*(double)>::send(5);
    while (!condition() &&
           InstanceMethod<"NSDate", "timeIntervalSinceNow", double()>::send(limit) > 0) {
        auto* soon =
            ClassMethod<"NSDate", "dateWithTimeIntervalSinceNow:", NSObject*(double)>::send(0.02);
        InstanceMethod<"NSRunLoop", "runMode:beforeDate:", Bool(NSString*, NSObject*)>::send(
            foundation::NSRunLoop::currentRunLoop(), NSDefaultRunLoopMode, soon);
    }
    return condition();
}

TEST(RepeatingTimer, TicksUntilItIsStoppedAndAgainWhenItIsStarted) {
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

TEST(RepeatingTimer, TicksNoMoreOnceItIsGone) {
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

} // namespace
} // namespace platform::appkit
