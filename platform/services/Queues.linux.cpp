#include "platform/services/Queues.hpp"

#include "platform/base/SpawnPrimitives.hpp"
#include "platform/base/UniqueFd.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Runtime.hpp"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>

namespace platform {

namespace {

// Static initialization runs on the main thread.
const std::thread::id mainThread = std::this_thread::get_id();

// Nothing in this file enters Objective-C in the background: no post, and no autorelease pool
// around work. The GNU runtime holds its lock while a class gets its first message, in which
// GNUstep takes locks of its own; a thread that holds one of those and needs the runtime's would
// deadlock with it.

// A queue under a mutex, and an eventfd that counts its entries. On the descriptor waits the loop
// below, in a program without a window, or the application's event loop.
class MainQueue : public Executor {
  public:
    MainQueue() : count_(::eventfd(0, EFD_CLOEXEC | EFD_SEMAPHORE)) {
        if (!count_) {
            throw std::system_error(errno, std::generic_category(), "eventfd");
        }
    }

    void post(std::function<void()> work) override {
        {
            const std::scoped_lock lock(mutex_);
            pending_.push_back(std::move(work));
        }
        ::eventfd_write(count_.get(), 1);
    }

    // Waits for the next piece of work and runs it.
    void runNext() {
        eventfd_t one = 0;
        retryInterrupted([&] { return ::eventfd_read(count_.get(), &one); });
        takeFirst()();
    }

    [[nodiscard]] int descriptor() const { return count_.get(); }

  private:
    std::function<void()> takeFirst() {
        const std::scoped_lock lock(mutex_);
        auto work = std::move(pending_.front());
        pending_.pop_front();
        return work;
    }

    UniqueFd count_;
    std::mutex mutex_;
    std::deque<std::function<void()>> pending_;
};

// Never destroyed: a thread in the background may post while the process exits.
MainQueue& queue() {
    static MainQueue& only = *new MainQueue;
    return only;
}

void runGuarded(const std::function<void()>& work) {
    try {
        work();
    } catch (...) {
        objc::failAtBoundary();
    }
}

// A thread for each piece of work: there are few, they are long, and each may block.
class ThreadPerWork : public Executor {
  public:
    void post(std::function<void()> work) override {
        std::thread([work = std::move(work)] { runGuarded(work); }).detach();
    }
};

class SerialQueue : public Executor {
  public:
    explicit SerialQueue(const std::string& label) {
        std::thread thread([this] { serve(); });
        // A thread's name has at most fifteen characters.
        ::pthread_setname_np(
            thread.native_handle(),
            label.substr(label.size() - std::min<std::size_t>(15, label.size())).c_str());
        thread.detach();
    }

    void post(std::function<void()> work) override {
        {
            const std::scoped_lock lock(mutex_);
            pending_.push_back(std::move(work));
        }
        arrived_.notify_one();
    }

  private:
    [[noreturn]] void serve() {
        while (true) {
            std::unique_lock lock(mutex_);
            arrived_.wait(lock, [this] { return !pending_.empty(); });
            const auto work = std::move(pending_.front());
            pending_.pop_front();
            lock.unlock();
            runGuarded(work);
        }
    }

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> pending_;
};

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
        runGuarded([] { queue().runNext(); });
    }
}

int mainQueueDescriptor() {
    return queue().descriptor();
}

void runNextOfMainQueue() {
    queue().runNext();
}

// Neither is ever destroyed: their threads run until the process ends.
Executor& utilityQueue() {
    static Executor& only = *new ThreadPerWork;
    return only;
}

Executor& makeSerialQueue(const std::string& label) {
    return *new SerialQueue(label);
}

} // namespace platform
