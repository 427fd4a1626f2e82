#pragma once

#include "platform/base/Task.hpp"
#include "platform/services/Queues.hpp"

#include <future>
#include <type_traits>

// For tests whose code needs a main thread that serves its queue. Such a test program is linked
// with MainLoopMain.cpp: the main thread runs the loop and the tests run on another.

namespace platform::testing {

/// Runs a function on the main thread, waits for it and gives its result.
template <class Function>
auto onMain(Function function) {
    std::packaged_task<std::invoke_result_t<Function>()> call(std::move(function));
    auto result = call.get_future();
    mainQueue().post([&call] { call(); });
    return result.get();
}

/// Begins the task that a function gives, on the main thread; waits for its end and gives its
/// result, or throws what it threw.
template <class Function>
auto awaitOnMain(Function function) {
    using Awaited = std::invoke_result_t<Function>;
    using Result = decltype(std::declval<Awaited>().operator co_await().await_resume());
    std::promise<Result> promise;
    auto result = promise.get_future();
    const auto wait = [](Function& begin, std::promise<Result>& ended) -> Task<void> {
        try {
            if constexpr (std::is_void_v<Result>) {
                co_await begin();
                ended.set_value();
            } else {
                ended.set_value(co_await begin());
            }
        } catch (...) {
            ended.set_exception(std::current_exception());
        }
    };
    mainQueue().post([&] { start(wait(function, promise)); });
    return result.get();
}

} // namespace platform::testing
