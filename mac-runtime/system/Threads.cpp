#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"

#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <linux/futex.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

// pthread(3) with <pthread/pthread_impl.h>'s objects: a statically initialised one holds a
// signature and zeroes. Threads have stacks of 512 KB ("Threading Programming Guide", thread
// costs).

namespace mac {

namespace {

constexpr std::size_t stackSize = 512 * 1024;

// 64 bytes on a Mac: this system's mutex fits in after the signature.
struct Mutex {
    long signature;
    pthread_mutex_t own;
};

static_assert(sizeof(Mutex) <= 64);
constexpr long plainMutex = 0x32AAABA7;

pthread_mutex_t* ownOf(Mutex* mutex) {
    if (mutex->signature != plainMutex) {
        fail("a mutex with the signature %#lx, which is not known",
             static_cast<unsigned long>(mutex->signature));
    }
    return &mutex->own;
}

// 48 bytes on a Mac, too few for this system's. A counter that each wake-up increments, with a
// futex on it, does as well.
struct Condition {
    long signature;
    std::atomic<std::uint32_t> turn;
};

static_assert(sizeof(Condition) <= 48);
constexpr long plainCondition = 0x3CB0B1BB;

std::atomic<std::uint32_t>& turnOf(Condition* condition) {
    if (condition->signature != plainCondition) {
        fail("a condition with the signature %#lx, which is not known",
             static_cast<unsigned long>(condition->signature));
    }
    return condition->turn;
}

long futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value) {
    return ::syscall(SYS_futex, &word, operation, value, nullptr, nullptr, 0);
}

void wake(Condition* condition, int howMany) {
    std::atomic<std::uint32_t>& turn = turnOf(condition);
    ++turn;
    futex(turn, FUTEX_WAKE_PRIVATE, static_cast<std::uint32_t>(howMany));
}

namespace darwin {

int mutexLock(Mutex* mutex) {
    return darwinError(::pthread_mutex_lock(ownOf(mutex)));
}

int mutexUnlock(Mutex* mutex) {
    return darwinError(::pthread_mutex_unlock(ownOf(mutex)));
}

int mutexInit(Mutex* mutex, const void* attributes) {
    if (attributes != nullptr) {
        fail("pthread_mutex_init with attributes");
    }
    mutex->signature = plainMutex;
    return darwinError(::pthread_mutex_init(&mutex->own, nullptr));
}

int mutexDestroy(Mutex* mutex) {
    const int error = darwinError(::pthread_mutex_destroy(ownOf(mutex)));
    if (error == 0) {
        mutex->signature = 0;
    }
    return error;
}

int conditionWait(Condition* condition, Mutex* mutex) {
    std::atomic<std::uint32_t>& turn = turnOf(condition);
    const std::uint32_t seen = turn;
    ::pthread_mutex_unlock(ownOf(mutex));
    futex(turn, FUTEX_WAIT_PRIVATE, seen);
    return darwinError(::pthread_mutex_lock(ownOf(mutex)));
}

int conditionBroadcast(Condition* condition) {
    wake(condition, INT_MAX);
    return 0;
}

int conditionSignal(Condition* condition) {
    wake(condition, 1);
    return 0;
}

int conditionDestroy(Condition* condition) {
    turnOf(condition);
    condition->signature = 0;
    return 0;
}

int create(pthread_t* thread, const void* attributes, void* (*start)(void*), void* context) {
    if (attributes != nullptr) {
        fail("pthread_create with attributes");
    }
    pthread_attr_t own;
    ::pthread_attr_init(&own);
    ::pthread_attr_setstacksize(&own, stackSize);
    const int error = ::pthread_create(thread, &own, start, context);
    ::pthread_attr_destroy(&own);
    return darwinError(error);
}

int join(pthread_t thread, void** result) {
    return darwinError(::pthread_join(thread, result));
}

int detach(pthread_t thread) {
    return darwinError(::pthread_detach(thread));
}

// A thread's Mach port: any number that is unique among the threads.
std::uint32_t machThread(pthread_t thread) {
    if (thread != ::pthread_self()) {
        fail("pthread_mach_thread_np of another thread");
    }
    return static_cast<std::uint32_t>(::syscall(SYS_gettid));
}

int isMain() {
    return ::getpid() == ::syscall(SYS_gettid) ? 1 : 0;
}

int keyCreate(unsigned long* key, void (*destroy)(void*)) {
    pthread_key_t own = 0;
    const int error = ::pthread_key_create(&own, destroy);
    *key = own;
    return darwinError(error);
}

int keyDelete(unsigned long key) {
    return darwinError(::pthread_key_delete(static_cast<pthread_key_t>(key)));
}

int setSpecific(unsigned long key, const void* value) {
    return darwinError(::pthread_setspecific(static_cast<pthread_key_t>(key), value));
}

void* getSpecific(unsigned long key) {
    return ::pthread_getspecific(static_cast<pthread_key_t>(key));
}

} // namespace darwin

} // namespace

Symbols threadSymbols() {
    static const Symbol symbols[] = {
        {"_pthread_mutex_lock", address(darwin::mutexLock)},
        {"_pthread_mutex_unlock", address(darwin::mutexUnlock)},
        {"_pthread_mutex_init", address(darwin::mutexInit)},
        {"_pthread_mutex_destroy", address(darwin::mutexDestroy)},
        {"_pthread_cond_wait", address(darwin::conditionWait)},
        {"_pthread_cond_broadcast", address(darwin::conditionBroadcast)},
        {"_pthread_cond_signal", address(darwin::conditionSignal)},
        {"_pthread_cond_destroy", address(darwin::conditionDestroy)},
        {"_pthread_create", address(darwin::create)},
        {"_pthread_join", address(darwin::join)},
        {"_pthread_detach", address(darwin::detach)},
        {"_pthread_mach_thread_np", address(darwin::machThread)},
        {"_pthread_main_np", address(darwin::isMain)},
        {"_pthread_key_create", address(darwin::keyCreate)},
        {"_pthread_key_delete", address(darwin::keyDelete)},
        {"_pthread_setspecific", address(darwin::setSpecific)},
        {"_pthread_getspecific", address(darwin::getSpecific)},
    };
    return symbols;
}

} // namespace mac
