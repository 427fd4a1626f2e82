#pragma once

#include "platform/services/Queues.hpp"

#include <exception>
#include <functional>
#include <optional>
#include <type_traits>
#include <variant>

namespace platform {

namespace detail {

template <class T>
struct TaskResult {
    using type = T;
};

template <class T>
struct TaskResult<Task<T>> {
    using type = T;
};

// A function's result or exception, on its way to another thread.
template <class T>
struct Outcome {
    std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> result;
    std::exception_ptr failure;

    template <class Function>
    void capture(Function& function) {
        try {
            if constexpr (std::is_void_v<T>) {
                function();
            } else {
                result.emplace(function());
            }
        } catch (...) {
            failure = currentFailure();
        }
    }

    T take() {
        if (failure) {
            std::rethrow_exception(failure);
        }
        if constexpr (!std::is_void_v<T>) {
            return std::move(*result);
        }
    }
};

} // namespace detail

/// Runs a function on the main thread and returns its result, or rethrows its exception, where the
/// caller was: on the main thread, or in the background.
template <class Function>
Task<std::invoke_result_t<Function>> runOnMain(Function function) {
    if (isMainThread()) {
        co_return function();
    }
    detail::Outcome<std::invoke_result_t<Function>> outcome;
    co_await resumeOn(mainQueue());
    outcome.capture(function);
    co_await resumeOn(utilityQueue());
    co_return outcome.take();
}

/// Runs a function in the background, or awaits the task that it returns, and continues on the main
/// thread with its result or exception.
template <class Function>
Task<typename detail::TaskResult<std::invoke_result_t<Function>>::type>
runInBackground(Function function) {
    using Direct = std::invoke_result_t<Function>;
    using Result = typename detail::TaskResult<Direct>::type;
    detail::Outcome<Result> outcome;
    co_await resumeOn(utilityQueue());
    if constexpr (std::is_same_v<Direct, Result>) {
        outcome.capture(function);
    } else {
        try {
            if constexpr (std::is_void_v<Result>) {
                co_await function();
            } else {
                outcome.result.emplace(co_await function());
            }
        } catch (...) {
            outcome.failure = currentFailure();
        }
    }
    co_await resumeOn(mainQueue());
    co_return outcome.take();
}

} // namespace platform
