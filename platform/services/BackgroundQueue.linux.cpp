#include "platform/services/BackgroundQueue.hpp"

#include "platform/objc/Boundary.hpp"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <thread>

namespace platform {

namespace {

// No pool stands here: on this system nothing in the background enters Objective-C. The runtime
// sends a class its first message with a lock of its own held, and GNUstep's answers want GNUstep's
// locks; another thread that holds one of those and needs the runtime's would stop both for ever.
void runGuarded(const std::function<void()>& work) {
    try {
        work();
    } catch (...) {
        objc::failAtBoundary();
    }
}

// A thread for each piece of work: they are few and long, and each may block.
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
        // The system keeps fifteen characters of a thread's name.
        ::pthread_setname_np(
            thread.native_handle(),
            label.substr(label.size() - std::min<std::size_t>(15, label.size())).c_str());
        thread.detach();
    }

    void post(std::function<void()> work) override {
        {
            const std::scoped_lock lock(mutex);
            pending.push_back(std::move(work));
        }
        arrived.notify_one();
    }

  private:
    [[noreturn]] void serve() {
        while (true) {
            std::unique_lock lock(mutex);
            arrived.wait(lock, [this] { return !pending.empty(); });
            const auto work = std::move(pending.front());
            pending.pop_front();
            lock.unlock();
            runGuarded(work);
        }
    }

    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::function<void()>> pending;
};

} // namespace

// Both kinds are never destroyed: their threads run until the process ends.
Executor& utilityQueue() {
    static Executor& only = *new ThreadPerWork;
    return only;
}

Executor& makeSerialQueue(const std::string& label) {
    return *new SerialQueue(label);
}

} // namespace platform
