#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <optional>
#include <utility>

namespace platform {

/// Runs work on a thread or on several. `post` returns at once.
class Executor {
  public:
    Executor() = default;
    virtual ~Executor() = default;
    Executor(const Executor&) = delete;
    Executor& operator=(const Executor&) = delete;

    virtual void post(std::function<void()> work) = 0;
};

/// `co_await resumeOn(queue)`: the coroutine continues as work of that queue.
inline auto resumeOn(Executor& executor) {
    struct Awaiter {
        Executor& executor;

        [[nodiscard]] bool await_ready() const { return false; }

        void await_suspend(std::coroutine_handle<> caller) const {
            executor.post([caller] { caller.resume(); });
        }

        void await_resume() const {}
    };

    return Awaiter{executor};
}

/// Inside a catch clause: the exception, to be rethrown elsewhere. One of another language cannot
/// be kept; dropping it would hide the failure, so it terminates the program as an uncaught one
/// does.
[[nodiscard]] inline std::exception_ptr currentFailure() noexcept {
    std::exception_ptr failure = std::current_exception();
    if (!failure) {
        std::terminate();
    }
    return failure;
}

template <class T>
class Task;

namespace detail {

// The awaiting coroutine continues when the task ends, on the same thread.
struct TaskPromiseBase {
    std::coroutine_handle<> continuation = std::noop_coroutine();
    std::exception_ptr failure;

    [[nodiscard]] std::suspend_always initial_suspend() const { return {}; }

    struct FinalAwaiter {
        [[nodiscard]] bool await_ready() const noexcept { return false; }

        template <class Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> ended) const noexcept {
            return ended.promise().continuation;
        }

        void await_resume() const noexcept {}
    };

    [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }

    void unhandled_exception() { failure = currentFailure(); }

    void rethrowFailure() const {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }
};

template <class T>
struct TaskPromise : TaskPromiseBase {
    std::optional<T> result;

    Task<T> get_return_object();

    void return_value(T value) { result = std::move(value); }

    T take() {
        rethrowFailure();
        return std::move(*result);
    }
};

template <>
struct TaskPromise<void> : TaskPromiseBase {
    Task<void> get_return_object();

    void return_void() const {}

    void take() const { rethrowFailure(); }
};

} // namespace detail

/// The future result of an asynchronous function. Its body begins when the task is awaited and runs
/// on the awaiting thread until it first suspends; what it throws is rethrown in the awaiting
/// coroutine. Movable, not copyable; awaited once.
template <class T = void>
class [[nodiscard]] Task {
  public:
    using promise_type = detail::TaskPromise<T>;

    explicit Task(std::coroutine_handle<promise_type> coroutine) : coroutine_(coroutine) {}

    Task(Task&& other) noexcept : coroutine_(std::exchange(other.coroutine_, nullptr)) {}

    Task& operator=(Task&& other) noexcept {
        std::swap(coroutine_, other.coroutine_);
        return *this;
    }

    ~Task() {
        if (coroutine_) {
            coroutine_.destroy();
        }
    }

    auto operator co_await() const {
        struct Awaiter {
            std::coroutine_handle<promise_type> coroutine;

            [[nodiscard]] bool await_ready() const { return false; }

            std::coroutine_handle<> await_suspend(std::coroutine_handle<> caller) const {
                coroutine.promise().continuation = caller;
                return coroutine;
            }

            T await_resume() const { return coroutine.promise().take(); }
        };

        return Awaiter{coroutine_};
    }

  private:
    std::coroutine_handle<promise_type> coroutine_;
};

namespace detail {

template <class T>
Task<T> TaskPromise<T>::get_return_object() {
    return Task<T>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

inline Task<void> TaskPromise<void>::get_return_object() {
    return Task<void>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

// A coroutine that nobody owns or awaits: it frees itself. Nobody could get its exception, which
// therefore propagates to whatever resumed it, before the frame is freed.
struct Detached {
    struct promise_type {
        [[nodiscard]] Detached get_return_object() const { return {}; }

        [[nodiscard]] std::suspend_never initial_suspend() const { return {}; }

        [[nodiscard]] std::suspend_never final_suspend() const noexcept { return {}; }

        void return_void() const {}

        void unhandled_exception() const { throw; }
    };
};

} // namespace detail

/// Starts a task that nobody awaits. It runs on this thread until it first suspends. What it throws
/// propagates to whatever runs it then: this function's caller, later its queue.
inline void start(Task<void> task) {
    [](Task<void> owned) -> detail::Detached { co_await owned; }(std::move(task));
}

} // namespace platform
