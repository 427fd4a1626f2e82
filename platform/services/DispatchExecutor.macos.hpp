#pragma once

#include "platform/base/Task.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Boundary.hpp"

#include <dispatch/dispatch.h>

#include <memory>

namespace platform {

/// A dispatch queue as an executor. Each piece of work has its own pool, and nothing thrown
/// leaves it.
class DispatchExecutor : public Executor {
  public:
    explicit DispatchExecutor(dispatch_queue_t queue) : queue(queue) {}

    void post(std::function<void()> work) override {
        dispatch_async_f(queue, new std::function<void()>(std::move(work)), [](void* context) {
            const std::unique_ptr<std::function<void()>> owned(
                static_cast<std::function<void()>*>(context));
            const objc::AutoreleasePool pool;
            try {
                (*owned)();
            } catch (...) {
                objc::failAtBoundary();
            }
        });
    }

  private:
    dispatch_queue_t queue;
};

} // namespace platform
