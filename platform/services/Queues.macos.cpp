#include "platform/services/Queues.hpp"

#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Runtime.hpp"
#include "platform/services/SystemSymbols.macos.hpp"

#include <dispatch/dispatch.h>

#include <cstdlib>
#include <memory>
#include <pthread.h>

namespace platform {

namespace {

// A dispatch queue as an executor. Each piece of work has its own autorelease pool, and no
// exception leaves it.
class DispatchExecutor : public Executor {
  public:
    explicit DispatchExecutor(dispatch_queue_t queue) : queue_(queue) {}

    void post(std::function<void()> work) override {
        dispatch_async_f(queue_, new std::function<void()>(std::move(work)), [](void* context) {
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
    dispatch_queue_t queue_;
};

} // namespace

Executor& mainQueue() {
    static Executor& only = *new DispatchExecutor(dispatch_get_main_queue());
    return only;
}

bool isMainThread() {
    return ::pthread_main_np() != 0;
}

// Not dispatch_main, which gives the main thread up: the input-source functions must be called on
// it.
void runMainLoop() {
    while (true) {
        CFRunLoopRun();
    }
}

Executor& utilityQueue() {
    static Executor& only = *new DispatchExecutor(dispatch_get_global_queue(QOS_CLASS_UTILITY, 0));
    return only;
}

Executor& makeSerialQueue(const std::string& label) {
    dispatch_queue_attr_t attributes =
        dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_UTILITY, 0);
    return *new DispatchExecutor(dispatch_queue_create(label.c_str(), attributes));
}

} // namespace platform
