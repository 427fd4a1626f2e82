#include "platform/services/BackgroundQueue.hpp"

#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Boundary.hpp"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <thread>

namespace platform {

namespace {

void runGuarded(const std::function<void()>& work) {
    const objc::AutoreleasePool pool;
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
