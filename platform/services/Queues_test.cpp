#include "platform/services/MainBundle.hpp"
#include "platform/services/Queues.hpp"
#include "platform/testing/OnMain.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <barrier>
#include <future>
#include <memory>
#include <numeric>
#include <thread>

namespace platform {
namespace {

// The tests run on another thread than the main one, which serves its queue.

TEST(MainQueue, RunsItsWorkOnTheMainThread) {
    EXPECT_FALSE(isMainThread());
    EXPECT_TRUE(testing::onMain([] { return isMainThread(); }));
}

TEST(MainQueue, KeepsTheOrderOfEachThreadThatPosts) {
    constexpr int threadCount = 4;
    constexpr int postCount = 5000;
    std::vector<std::vector<int>> arrived(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&arrived, t] {
            for (int i = 0; i < postCount; ++i) {
                mainQueue().post(
                    [&arrived, t, i] { arrived[static_cast<unsigned>(t)].push_back(i); });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const auto result = testing::onMain([&] { return arrived; });
    std::vector<int> inOrder(postCount);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    EXPECT_THAT(result, ::testing::Each(inOrder));
}

TEST(MainQueue, WorkPostedByWorkRunsAfterIt) {
    std::vector<int> order;
    testing::onMain([&] {
        mainQueue().post([&] { order.push_back(2); });
        order.push_back(1);
    });
    testing::onMain([] {});
    EXPECT_THAT(order, ::testing::ElementsAre(1, 2));
}

TEST(UtilityQueue, RunsWorkConcurrentlyOffTheMainThread) {
    struct Meeting {
        std::barrier<> everybody{4};
        std::atomic<int> onMain = 0;
    };

    // Shared: the last thread may leave after the end of the test.
    const auto meeting = std::make_shared<Meeting>();
    for (int i = 0; i < 3; ++i) {
        utilityQueue().post([meeting] {
            meeting->onMain += isMainThread() ? 1 : 0;
            meeting->everybody.arrive_and_wait();
        });
    }
    meeting->everybody.arrive_and_wait();
    EXPECT_EQ(meeting->onMain, 0);
}

TEST(SerialQueue, RunsOnePieceAfterTheOtherInOrderOnOneThread) {
    Executor& queue = makeSerialQueue("ai.kovra.test.serial");
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    std::promise<void> ended;
    for (int i = 0; i < 2000; ++i) {
        queue.post([&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    }
    queue.post([&] { ended.set_value(); });
    ended.get_future().get();
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_EQ(order.size(), 2000U);
    EXPECT_THAT(threads, ::testing::Each(threads.front()));
}

TEST(MainBundle, IsReadFromAnyThread) {
    const std::string path = testing::onMain([] { return mainBundlePath(); });
    EXPECT_THAT(path, ::testing::StartsWith("/"));
    std::promise<std::string> read;
    utilityQueue().post([&] { read.set_value(mainBundlePath()); });
    EXPECT_EQ(read.get_future().get(), path);
}

TEST(QueuesDeathTest, WorkThatThrowsEndsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto throwOn = [](Executor& queue) {
        queue.post([] { throw std::runtime_error("unheard"); });
        std::this_thread::sleep_for(std::chrono::seconds(60));
    };
    EXPECT_EXIT(throwOn(utilityQueue()), ::testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(throwOn(makeSerialQueue("q")), ::testing::KilledBySignal(SIGABRT), "");
}

} // namespace
} // namespace platform
