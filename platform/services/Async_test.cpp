#include "platform/services/Async.hpp"
#include "platform/testing/OnMain.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace platform {
namespace {

// Where each stretch of a coroutine ran: m on the main thread, b in the background.
char here() {
    return isMainThread() ? 'm' : 'b';
}

template <class Function>
auto awaited(Function function) {
    return testing::awaitOnMain(function);
}

TEST(RunInBackground, LeavesTheMainThreadForTheWorkAndComesBackWithTheResult) {
    const std::string places = awaited([]() -> Task<std::string> {
        std::string trace(1, here());
        trace += co_await runInBackground([] { return here(); });
        trace += here();
        co_return trace;
    });
    EXPECT_EQ(places, "mbm");
}

TEST(RunInBackground, AwaitsATaskThatTheFunctionGives) {
    const std::string places = awaited([]() -> Task<std::string> {
        std::string trace(1, here());
        trace += co_await runInBackground([]() -> Task<std::string> {
            std::string inner(1, here());
            inner += co_await runOnMain([] { return here(); });
            inner += here();
            co_return inner;
        });
        trace += here();
        co_return trace;
    });
    EXPECT_EQ(places, "mbmbm");
}

TEST(RunInBackground, RethrowsOnTheMainThread) {
    const std::string places = awaited([]() -> Task<std::string> {
        std::string trace;
        try {
            co_await runInBackground([]() -> int { throw std::runtime_error("work"); });
        } catch (const std::runtime_error& error) {
            trace = std::string(error.what()) + here();
        }
        try {
            co_await runInBackground([]() -> Task<int> {
                co_await runOnMain([] {});
                throw std::runtime_error(" task");
            });
        } catch (const std::runtime_error& error) {
            trace += std::string(error.what()) + here();
        }
        co_return trace;
    });
    EXPECT_EQ(places, "workm taskm");
}

TEST(RunInBackground, AcceptsFunctionsWithoutAResult) {
    EXPECT_EQ(awaited([]() -> Task<std::string> {
                  std::string trace;
                  co_await runInBackground([&] { trace += here(); });
                  co_await runInBackground([&]() -> Task<> {
                      trace += here();
                      co_return;
                  });
                  co_return trace + here();
              }),
              "bbm");
}

TEST(RunOnMain, FromTheBackgroundRunsOnTheMainThreadAndReturns) {
    EXPECT_EQ(awaited([]() -> Task<std::string> {
                  co_return co_await runInBackground([]() -> Task<std::string> {
                      std::string trace;
                      co_await runOnMain([&] { trace += here(); });
                      trace += here();
                      const auto owned =
                          co_await runOnMain([] { return std::make_unique<char>(here()); });
                      co_return trace + *owned + here();
                  });
              }),
              "mbmb");
}

TEST(RunOnMain, FromTheMainThreadStaysThere) {
    EXPECT_EQ(awaited([]() -> Task<std::string> {
                  std::string trace(1, co_await runOnMain([] { return here(); }));
                  co_return trace + here();
              }),
              "mm");
}

TEST(RunOnMain, RethrowsInTheBackground) {
    EXPECT_EQ(awaited([]() -> Task<std::string> {
                  co_return co_await runInBackground([]() -> Task<std::string> {
                      try {
                          co_await runOnMain([] { throw std::runtime_error("no"); });
                      } catch (const std::runtime_error& error) {
                          co_return std::string(error.what()) + here();
                      }
                      co_return "nothing thrown";
                  });
              }),
              "nob");
}

TEST(Async, ManyTasksInTurnSwitchBetweenTheThreads) {
    EXPECT_EQ(awaited([]() -> Task<int> {
                  int sum = 0;
                  for (int i = 0; i < 300; ++i) {
                      sum += co_await runInBackground([i] { return i; });
                  }
                  co_return sum;
              }),
              299 * 300 / 2);
}

} // namespace
} // namespace platform
