// dispatch_async_f(3), dispatch_queue_create(3), dispatch_get_global_queue(3),
// dispatch_queue_attr_make_with_qos_class(3), dispatch_queue_get_label(3) and dispatch_main(3):
// queues with threads of their own, and the main queue, which the first thread's run loop serves.
// qos_class_self of <sys/qos.h>, CFRunLoopRun of <CFRunLoop.h>.

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace mac {

namespace {

struct Work {
    void* context;
    void (*function)(void*);

    void run() const {
        @autoreleasepool {
            function(context);
        }
    }
};

// <sys/qos.h>. A thread knows its QoS class, but all threads are scheduled alike: niceness would be
// inherited by child processes, which the QoS class on a Mac is not, and could not be lowered
// again.
constexpr unsigned qualities[] = {0x21, 0x19, 0x15, 0x11, 0x09};

bool isQuality(unsigned number) {
    for (const unsigned quality : qualities) {
        if (quality == number) {
            return true;
        }
    }
    return false;
}

class Queue {
  public:
    const std::string label;
    const unsigned quality;

    Queue(std::string label, unsigned quality, int mostThreads)
        : label(std::move(label)), quality(quality), mostThreads_(mostThreads) {}

    // The queue of the calling thread, or null.
    static const Queue* current() { return served_; }

    void post(Work work) {
        const std::scoped_lock locked(lock_);
        waiting_.push_back(work);
        // An idle thread that was notified counts as idle until it runs.
        if (waiting_.size() > idle_ && threads_ < mostThreads_) {
            ++threads_;
            startThread();
        } else {
            arrived_.notify_one();
        }
    }

  private:
    std::mutex lock_;
    std::condition_variable arrived_;
    std::deque<Work> waiting_;
    int mostThreads_;
    int threads_ = 0;
    std::size_t idle_ = 0;
    static inline thread_local const Queue* served_ = nullptr;

    void startThread() {
        constexpr std::size_t stackSize = 512 * 1024;
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, stackSize);
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        pthread_t thread{};
        const auto start = [](void* queue) -> void* {
            static_cast<Queue*>(queue)->serve();
            return nullptr;
        };
        if (const int error = pthread_create(&thread, &attributes, start, this)) {
            fail("a queue gets no thread: %s", std::strerror(error));
        }
        pthread_attr_destroy(&attributes);
    }

    // Threads wait for more work until the process ends.
    void serve() {
        GSRegisterCurrentThread();
        served_ = this;
        // Linux limits a thread's name to 15 characters.
        const std::string end =
            label.substr(label.size() - std::min<std::size_t>(15, label.size()));
        pthread_setname_np(pthread_self(), end.c_str());
        std::unique_lock locked(lock_);
        while (true) {
            ++idle_;
            arrived_.wait(locked, [this] { return !waiting_.empty(); });
            --idle_;
            const Work work = waiting_.front();
            waiting_.pop_front();
            locked.unlock();
            work.run();
            locked.lock();
        }
    }
};

// The main queue. Its descriptor is readable once for each piece of work.
struct MainQueue {
    std::mutex lock;
    std::deque<Work> waiting;
    int descriptor = ::eventfd(0, EFD_CLOEXEC | EFD_SEMAPHORE);

    void post(Work work) {
        {
            const std::scoped_lock locked(lock);
            waiting.push_back(work);
        }
        ::eventfd_write(descriptor, 1);
    }

    void runNext() {
        eventfd_t count = 0;
        ::eventfd_read(descriptor, &count);
        std::unique_lock locked(lock);
        const Work work = waiting.front();
        waiting.pop_front();
        locked.unlock();
        work.run();
    }
};

// The program uses only the address of `_dispatch_main_q`; its content is never read.
struct {
    void* words[16];
} mainQueueObject;

MainQueue& mainQueue() {
    static MainQueue& only = *new MainQueue;
    return only;
}

// The attributes of a serial queue.
struct Attributes {
    unsigned quality;
};

namespace darwin {

void asyncF(void* queue, void* context, void (*function)(void*)) {
    const Work work{context, function};
    if (queue == &mainQueueObject) {
        mainQueue().post(work);
    } else {
        static_cast<Queue*>(queue)->post(work);
    }
}

// The number of threads that a Mac allows for work that blocks.
Queue* getGlobalQueue(long identifier, unsigned long flags) {
    constexpr int mostThreads = 64;
    const auto quality = static_cast<unsigned>(identifier);
    if (!isQuality(quality) || flags != 0) {
        fail("dispatch_get_global_queue of %#lx, flags %#lx, which is not known",
             static_cast<unsigned long>(identifier), flags);
    }
    static std::mutex lock;
    static Queue* queues[0x22];
    const std::scoped_lock locked(lock);
    Queue*& queue = queues[quality];
    if (queue == nullptr) {
        queue = new Queue("com.apple.root", quality, mostThreads);
    }
    return queue;
}

const Attributes* attributesWithQuality(const Attributes* serial, unsigned number, int priority) {
    if (serial != nullptr || !isQuality(number) || priority != 0) {
        fail("dispatch_queue_attr_make_with_qos_class of %#x, %d, which is not known", number,
             priority);
    }
    return new Attributes{number}; // never freed, as on a Mac
}

constexpr unsigned unspecified = 0;

Queue* queueCreate(const char* label, const Attributes* attributes) {
    const unsigned quality = attributes == nullptr ? unspecified : attributes->quality;
    return new Queue(label == nullptr ? "" : label, quality, 1);
}

// Both questions about it are supported on the program's queues only.
const Queue& currentQueue(const char* question) {
    const Queue* const current = Queue::current();
    if (current == nullptr) {
        fail("%s off the program's queues", question);
    }
    return *current;
}

const char* getLabel(const Queue* queue) {
    if (queue != nullptr) {
        fail("dispatch_queue_get_label of another queue than the current one");
    }
    return currentQueue("dispatch_queue_get_label").label.c_str();
}

unsigned qualityOfSelf() {
    return currentQueue("qos_class_self").quality;
}

void runLoopRun() {
    serveMainQueueInRunLoop();
    [[NSRunLoop currentRunLoop] run];
}

} // namespace darwin

} // namespace

bool isFirstThread() {
    return ::getpid() == ::syscall(SYS_gettid);
}

void postToMainQueue(void* context, void (*function)(void*)) {
    mainQueue().post({context, function});
}

Symbols dispatchSymbols() {
    static const Symbol symbols[] = {
        {"__dispatch_main_q", &mainQueueObject},
        {"_dispatch_async_f", address(darwin::asyncF)},
        {"_dispatch_get_global_queue", address(darwin::getGlobalQueue)},
        {"_dispatch_queue_attr_make_with_qos_class", address(darwin::attributesWithQuality)},
        {"_dispatch_queue_create", address(darwin::queueCreate)},
        {"_dispatch_queue_get_label", address(darwin::getLabel)},
        {"_qos_class_self", address(darwin::qualityOfSelf)},
        {"_CFRunLoopRun", address(darwin::runLoopRun)},
    };
    return symbols;
}

} // namespace mac

@interface MacMainQueueWatcher : NSObject <RunLoopEvents>
@end

@implementation MacMainQueueWatcher

// One piece of work for each turn of the run loop, so that mouse events are handled in between.
- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
    mac::mainQueue().runNext();
}

@end

void mac::serveMainQueueInRunLoop() {
    static bool serves = false;
    if (serves) {
        return;
    }
    serves = true;
    MacMainQueueWatcher* watcher = [MacMainQueueWatcher new];
    void* descriptor = reinterpret_cast<void*>(static_cast<std::intptr_t>(mainQueue().descriptor));
    for (NSString *mode in
         [NSArray arrayWithObjects:NSDefaultRunLoopMode, NSEventTrackingRunLoopMode,
                                   NSModalPanelRunLoopMode, nil]) {
        [[NSRunLoop currentRunLoop] addEvent:descriptor type:ET_RDESC watcher:watcher forMode:mode];
    }
}
