// The Mac's queues, on stand-ins that run work only when a test says so.

#include "platform/services/Queues.hpp"

#include "platform/foundation/NSObject.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Retained.hpp"
#include "platform/testing/darwin/Darwin.hpp"
#include "platform/testing/darwin/dispatch/dispatch.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <stdexcept>
#include <string>

namespace platform {

// Thrown to end runMainLoop, which does not return.
struct LoopHasRun {};

int loopsRun = 0;
bool onTheMainThread = false;

namespace {

void runAllOf(dispatch_queue_t queue) {
    while (!queue->functions.empty()) {
        queue->runNext();
    }
}

TEST(QueuesOfAMac, TheMainQueueIsTheSystemsAndKeepsItsOrder) {
    std::string order;
    mainQueue().post([&order] { order += "first "; });
    mainQueue().post([&order] { order += "second"; });
    EXPECT_EQ(order, "");
    runAllOf(dispatch_get_main_queue());
    EXPECT_EQ(order, "first second");
    EXPECT_EQ(&mainQueue(), &mainQueue());
}

TEST(QueuesOfAMac, TheUtilityQueueIsTheSystemsGlobalOne) {
    int ran = 0;
    utilityQueue().post([&ran] { ++ran; });
    EXPECT_EQ(ran, 0);
    runAllOf(dispatch_get_global_queue(QOS_CLASS_UTILITY, 0));
    EXPECT_EQ(ran, 1);
}

TEST(QueuesOfAMac, ASerialQueueHasItsLabelAndUtilityPriority) {
    dispatchCreated.clear();
    // A queue lives as long as the process.
    static Executor& queue = makeSerialQueue("ai.kovra.test.serial");
    ASSERT_EQ(dispatchCreated.size(), 1U);
    EXPECT_EQ(dispatchCreated[0]->description, "serial utility ai.kovra.test.serial");
    int ran = 0;
    queue.post([&ran] { ++ran; });
    runAllOf(dispatchCreated[0]);
    EXPECT_EQ(ran, 1);
}

TEST(QueuesOfAMac, WorkHasItsOwnAutoreleasePoolAndIsFreedWithItsCaptures) {
    const objc::AutoreleasePool pool;
    const auto object = objc::adopt(objc::sendMessage<foundation::NSObject*>(
        objc::classNamed<"NSObject">(), objc::selector<"new">()));
    const auto owners = [&object] {
        return objc::InstanceMethod<"NSObject", "retainCount", objc::UInteger()>::send(
            object.get());
    };
    const auto held = std::make_shared<int>();
    mainQueue().post(
        [&object, held] { static_cast<void>(objc::autoreleased(objc::retain(object.get()))); });
    EXPECT_EQ(owners(), 1U);
    EXPECT_EQ(held.use_count(), 2);
    runAllOf(dispatch_get_main_queue());
    EXPECT_EQ(owners(), 1U);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(QueuesOfAMacDeathTest, WorkThatThrowsEndsTheProgram) {
    mainQueue().post([] { throw std::runtime_error("thrown"); });
    EXPECT_EXIT(runAllOf(dispatch_get_main_queue()), ::testing::KilledBySignal(SIGABRT), "");
    dispatch_get_main_queue()->functions.clear();
    dispatch_get_main_queue()->contexts.clear();
}

TEST(QueuesOfAMac, TheMainThreadIsTheSystems) {
    for (const bool answer : {true, false}) {
        onTheMainThread = answer;
        EXPECT_EQ(isMainThread(), answer);
    }
}

// A run loop without sources returns at once.
TEST(QueuesOfAMac, TheMainLoopRestartsTheRunLoopWhenItEnds) {
    loopsRun = 0;
    EXPECT_THROW(runMainLoop(), LoopHasRun);
    EXPECT_EQ(loopsRun, 3);
}

} // namespace
} // namespace platform

int pthread_main_np() {
    return platform::onTheMainThread ? 1 : 0;
}

extern "C" void CFRunLoopRun() {
    if (++platform::loopsRun == 3) {
        throw platform::LoopHasRun();
    }
}
