#include "platform/services/MainQueue.hpp"

#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/services/BackgroundQueue.hpp"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace platform {

namespace {

using objc::InstanceMethod;

// Whoever initialises this file's statics is the main thread.
const std::thread::id mainThread = std::this_thread::get_id();

// One locked queue. Two things drain it: the loop below in a program without a window, and in
// one with a window the application's loop, which is sent a message for each piece of work.
class Queue : public Executor {
  public:
    void post(std::function<void()> work) override {
        {
            const std::scoped_lock lock(mutex);
            pending.push_back(std::move(work));
        }
        arrived.notify_one();
        if (!servedHere) {
            wakeApplicationLoop();
        }
    }

    [[noreturn]] void serve() {
        servedHere = true;
        while (true) {
            waitAndRunOne();
        }
    }

    void runOne() {
        std::unique_lock lock(mutex);
        if (!pending.empty()) {
            const auto work = takeFirst();
            lock.unlock();
            work();
        }
    }

  private:
    void waitAndRunOne() {
        const objc::AutoreleasePool pool;
        std::unique_lock lock(mutex);
        arrived.wait(lock, [this] { return !pending.empty(); });
        const auto work = takeFirst();
        lock.unlock();
        try {
            work();
        } catch (...) {
            objc::failAtBoundary();
        }
    }

    std::function<void()> takeFirst() {
        auto work = std::move(pending.front());
        pending.pop_front();
        return work;
    }

    static void wakeApplicationLoop();

    std::atomic<bool> servedHere = false;
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::function<void()>> pending;
};

// Never destroyed: a thread in the background may post while the process exits.
Queue& queue() {
    static Queue& only = *new Queue;
    return only;
}

void runOneFromLoop(objc::Object*) {
    queue().runOne();
}

id receiver() {
    static const id only = [] {
        const Class made = objc::ClassBuilder("KovraMainQueueReceiver", "NSObject")
                               .method<runOneFromLoop>("runOne")
                               .registered();
        return objc::sendMessage<id>(made, objc::selector<"new">());
    }();
    return only;
}

void sendRunOne() {
    const objc::AutoreleasePool pool;
    InstanceMethod<"NSObject", "performSelectorOnMainThread:withObject:waitUntilDone:",
                   void(SEL, id, objc::Bool)>::send(receiver(), objc::selector<"runOne">(), nullptr,
                                                    objc::toBool(false));
}

// The application's loop goes to sleep over what its own thread has asked for while it was in the
// loop; what comes from another thread wakes it.
void Queue::wakeApplicationLoop() {
    if (isMainThread()) {
        static Executor& messenger = makeSerialQueue("main queue");
        messenger.post(sendRunOne);
    } else {
        sendRunOne();
    }
}

} // namespace

Executor& mainQueue() {
    return queue();
}

bool isMainThread() {
    return std::this_thread::get_id() == mainThread;
}

void runMainLoop() {
    queue().serve();
}

} // namespace platform
