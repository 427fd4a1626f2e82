#include "platform/base/Task.hpp"
#include "platform/testing/ForkedProcess.hpp"

#include <gmock/gmock.h>

#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
namespace {

using ::testing::ElementsAre;

// Keeps work until the test runs it.
class ManualQueue : public Executor {
  public:
    void post(std::function<void()> work) override { pending.push_back(std::move(work)); }

    void runAll() {
        while (!pending.empty()) {
            const auto work = std::move(pending.front());
            pending.pop_front();
            work();
        }
    }

    std::deque<std::function<void()>> pending;
};

struct Tasks : ::testing::Test {
    std::vector<std::string> events;
    ManualQueue queue;

    Task<int> seven() {
        events.emplace_back("seven begins");
        co_await resumeOn(queue);
        events.emplace_back("seven ends");
        co_return 7;
    }

    Task<int> doubled() { co_return 2 * co_await seven(); }

    Task<> record() { events.emplace_back("got " + std::to_string(co_await doubled())); }

    Task<int> failing() {
        co_await resumeOn(queue);
        throw std::runtime_error("no");
    }

    Task<> recordFailure() {
        try {
            co_await failing();
            events.emplace_back("no failure");
        } catch (const std::runtime_error& error) {
            events.emplace_back(error.what());
        }
    }
};

TEST_F(Tasks, BeginWhenTheyAreAwaitedAndNotBefore) {
    const Task<> task = record();
    EXPECT_THAT(events, ElementsAre());
}

TEST_F(Tasks, RunToTheFirstSuspensionAndContinueOnTheirQueue) {
    start(record());
    EXPECT_THAT(events, ElementsAre("seven begins"));
    queue.runAll();
    EXPECT_THAT(events, ElementsAre("seven begins", "seven ends", "got 14"));
}

TEST_F(Tasks, RethrowTheirExceptionInTheAwaitingCoroutine) {
    start(recordFailure());
    queue.runAll();
    EXPECT_THAT(events, ElementsAre("no"));
}

TEST_F(Tasks, MayReturnMoveOnlyTypes) {
    const auto owned = [](ManualQueue& queue) -> Task<std::unique_ptr<int>> {
        co_await resumeOn(queue);
        co_return std::make_unique<int>(5);
    };
    const auto use = [&](std::vector<std::string>& events) -> Task<> {
        events.emplace_back(std::to_string(*co_await owned(queue)));
    };
    start(use(events));
    queue.runAll();
    EXPECT_THAT(events, ElementsAre("5"));
}

// A chain that resumed each caller on the stack of the one it awaited would end the program.
TEST_F(Tasks, AwaitedAHundredThousandDeepInARowDoNotGrowTheStack) {
    const auto one = []() -> Task<int> { co_return 1; };
    const auto loop = [&](int& sum) -> Task<> {
        for (int i = 0; i < 100'000; ++i) {
            co_await resumeOn(queue);
            sum += co_await one();
        }
    };
    int sum = 0;
    start(loop(sum));
    queue.runAll();
    EXPECT_EQ(sum, 100'000);
}

TEST_F(Tasks, MovedOnesAreOwnedByTheirNewOwnerAlone) {
    Task<> first = record();
    Task<> second = std::move(first);
    first = record();
    start(std::move(second));
    queue.runAll();
    EXPECT_EQ(events.back(), "got 14");
    EXPECT_EQ(events.size(), 3U);
}

TEST_F(Tasks, ThatNobodyAwaitsThrowIntoTheirQueue) {
    const auto fail = [](ManualQueue& queue) -> Task<> {
        co_await resumeOn(queue);
        throw std::runtime_error("unheard");
    };
    // In a process that ends then, as the program would: the task is never freed.
    EXPECT_TRUE(testing::holdsInForkedProcess([&] {
        start(fail(queue));
        try {
            queue.runAll();
        } catch (const std::runtime_error& error) {
            return std::string_view(error.what()) == "unheard";
        }
        return false;
    }));
}

} // namespace
} // namespace platform
