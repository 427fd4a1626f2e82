#include "platform/services/MainQueue.hpp"

#include "platform/base/SpawnPrimitives.hpp"
#include "platform/base/UniqueFd.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Boundary.hpp"
#include "platform/services/MainQueueSource.linux.hpp"

#include <cerrno>
#include <deque>
#include <mutex>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>

namespace platform {

namespace {

// Whoever initialises this file's statics is the main thread.
const std::thread::id mainThread = std::this_thread::get_id();

// One locked queue and a descriptor that counts what is in it. Two things wait for the
// descriptor: the loop below in a program without a window, and the application's loop in one with
// a window. Posting enters no Objective-C: the runtime runs a class's first message under its own
// lock, and a thread that holds one of the toolkit's locks and waits for that one would stop both.
class Queue : public Executor {
  public:
    Queue() : count(::eventfd(0, EFD_CLOEXEC | EFD_SEMAPHORE)) {
        if (!count) {
            throw std::system_error(errno, std::generic_category(), "eventfd");
        }
    }

    void post(std::function<void()> work) override {
        {
            const std::scoped_lock lock(mutex);
            pending.push_back(std::move(work));
        }
        ::eventfd_write(count.get(), 1);
    }

    // Waits for the next piece of work and runs it.
    void runNext() {
        eventfd_t one = 0;
        retryInterrupted([&] { return ::eventfd_read(count.get(), &one); });
        takeFirst()();
    }

    [[nodiscard]] int descriptor() const { return count.get(); }

  private:
    std::function<void()> takeFirst() {
        const std::scoped_lock lock(mutex);
        auto work = std::move(pending.front());
        pending.pop_front();
        return work;
    }

    UniqueFd count;
    std::mutex mutex;
    std::deque<std::function<void()>> pending;
};

// Never destroyed: a thread in the background may post while the process exits.
Queue& queue() {
    static Queue& only = *new Queue;
    return only;
}

} // namespace

Executor& mainQueue() {
    return queue();
}

bool isMainThread() {
    return std::this_thread::get_id() == mainThread;
}

void runMainLoop() {
    while (true) {
        const objc::AutoreleasePool pool;
        try {
            queue().runNext();
        } catch (...) {
            objc::failAtBoundary();
        }
    }
}

int mainQueueDescriptor() {
    return queue().descriptor();
}

void runNextOfMainQueue() {
    queue().runNext();
}

} // namespace platform
