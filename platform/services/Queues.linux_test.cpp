#include "platform/services/Queues.hpp"

#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/MainBundle.hpp"
#include "platform/services/TextCase.hpp"
#include "platform/testing/OnMain.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <future>

// What holds for Linux's queues alone.

namespace platform {
namespace {

TEST(SerialQueue, ItsThreadIsNamedAfterItsLabel) {
    std::promise<std::string> name;
    makeSerialQueue("ai.kovra.test.privileged").post([&] {
        std::string line;
        std::getline(std::ifstream("/proc/thread-self/comm"), line);
        name.set_value(line);
    });
    EXPECT_EQ(name.get_future().get(), "test.privileged");
}

// All code that calls Foundation makes an autorelease pool first.
IMP makePool = nullptr;
std::atomic<int> poolsOffTheMainThread = 0;

id makePoolAndCount(id self, SEL selector) {
    poolsOffTheMainThread += isMainThread() ? 0 : 1;
    return objc::methodPointer<id (*)(id, SEL)>(makePool)(self, selector);
}

// The main thread may hold the runtime's lock at any time, in a class's first message.
TEST(Queues, BackgroundWorkDoesNotEnterObjectiveC) {
    makePool =
        class_replaceMethod(objc::classNamed<"NSAutoreleasePool">(), objc::selector<"init">(),
                            objc::methodPointer<IMP>(&makePoolAndCount), "@@:");
    {
        const objc::AutoreleasePool ours;
    }
    ASSERT_EQ(poolsOffTheMainThread.exchange(0), 1);

    std::promise<std::string> ended;
    utilityQueue().post([&] {
        makeSerialQueue("test").post([&] {
            const std::string path = mainBundlePath();
            mainQueue().post([&, path] { ended.set_value(path + lowercased("Ä")); });
        });
    });
    EXPECT_THAT(ended.get_future().get(), ::testing::EndsWith("ä"));
    EXPECT_EQ(poolsOffTheMainThread, 0);
}

} // namespace
} // namespace platform
