// A session of the uninstaller's log that ends in the way that its argument names. The tests run
// it with a home folder of its own and read the log.

#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/services/Async.hpp"
#include "platform/services/ProcessStart.hpp"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#include <utility>

extern "C" char** environ;

namespace {

using kovra::UninstallerLog;
using platform::foundation::NSObject;
using platform::foundation::NSString;
using platform::foundation::toNSString;
using platform::objc::ClassMethod;
using platform::objc::InstanceMethod;

// Called once, before the first crash line is written.
void (*inACrashLine)() = nullptr;

// Called in the C library's functions for local time, which hold a lock meanwhile.
void (*inLocalTime)() = nullptr;

// The C library's function of that name, which one below replaces.
template <class Function>
Function* replaced(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

template <class Function, class... Arguments>
auto callLocalTime(const char* name, Arguments... arguments) {
    if (inLocalTime != nullptr) {
        inLocalTime();
    }
    return replaced<Function>(name)(arguments...);
}

void throwObject() {
    auto* exception =
        ClassMethod<"NSException", "exceptionWithName:reason:userInfo:",
                    NSObject*(NSString*, NSString*, NSObject*)>::send(toNSString("TestException"),
                                                                      toNSString("for the test"),
                                                                      nullptr);
    InstanceMethod<"NSException", "raise", void()>::send(exception);
}

void throwError() {
    throw std::runtime_error("for the test");
}

void throwNumber() {
    throw 42;
}

platform::Task<void> inATaskOnMain(std::function<void()> thrower) {
    co_await platform::resumeOn(platform::mainQueue());
    thrower();
}

platform::Task<void> inATaskInTheBackground(std::function<void()> thrower) {
    static_cast<void>(co_await platform::runInBackground([thrower] {
        thrower();
        return 0;
    }));
}

// Called by the Objective-C runtime, as the action of a button is.
void (*thrownFromCallback)() = nullptr;

void callback(platform::objc::Object*) {
    thrownFromCallback();
}

void inACallback(void (*thrower)()) {
    thrownFromCallback = thrower;
    const Class made = platform::objc::ClassBuilder("CrashingCallback", "NSObject")
                           .method<callback>("call")
                           .registered();
    const id receiver = platform::objc::sendMessage<id>(made, platform::objc::selector<"new">());
    platform::objc::sendMessage<void>(receiver, platform::objc::selector<"call">());
}

void onAPlainThread(void (*thrower)()) {
    std::thread(thrower).join();
}

void readPastTheEndOfAFile() {
    const std::string path = UninstallerLog::logDir() + "/empty";
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    constexpr std::size_t page = 4096;
    auto* bytes =
        static_cast<volatile char*>(::mmap(nullptr, page, PROT_READ, MAP_SHARED, file, 0));
    static_cast<void>(bytes[0]);
}

// On purpose. A sanitizer would report the division first, and end the program differently.
__attribute__((no_sanitize("integer-divide-by-zero"))) void divideByZero() {
    volatile int zero = 0;
    volatile int result = 1 / zero;
    static_cast<void>(result);
    // Not every processor raises the signal.
    std::raise(SIGFPE);
}

void writeThroughANullPointer() {
    volatile int* volatile null = nullptr;
    *null = 1;
}

// The array and the addition after the call keep the recursion from becoming a loop.
int recurse(int depth) {
    volatile char room[4096] = {};
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : recurse(depth + 1) + room[0];
}

// A handler that called these functions again would wait for their lock for ever.
void faultInLocalTime() {
    inLocalTime = [] {
        constexpr int deadlock = 99;
        ::_exit(deadlock);
    };
    writeThroughANullPointer();
}

void faultInACrashLine(void (*first)(), void (*second)()) {
    inACrashLine = second;
    first();
}

[[noreturn]] void quitWhileWorkersLog() {
    static std::atomic<int> lines = 0;
    const auto waitForLines = [](int count) {
        while (lines < count) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    };
    for (int worker = 0; worker < 4; ++worker) {
        std::thread([] {
            while (true) {
                UninstallerLog::file("  Worker: at it");
                ++lines;
            }
        }).detach();
    }
    waitForLines(100);
    UninstallerLog::endSession();
    waitForLines(lines + 100);
    std::exit(EXIT_SUCCESS);
}

using Ending = std::function<void()>;

const std::map<std::string, Ending>& endings() {
    static const std::map<std::string, Ending> all{
        {"normal",
         [] {
             UninstallerLog::endSession();
             std::exit(EXIT_SUCCESS);
         }},
        {"while workers log", quitWhileWorkersLog},
        {"killed", [] { std::raise(SIGKILL); }},
        {"SIGSEGV", writeThroughANullPointer},
        {"SIGABRT", [] { std::abort(); }},
        {"SIGBUS", readPastTheEndOfAFile},
        {"SIGFPE", divideByZero},
        {"SIGILL", [] { std::raise(SIGILL); }},
        {"SIGTRAP", [] { std::raise(SIGTRAP); }},
        {"SIGSEGV in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, writeThroughANullPointer); }},
        {"raised SIGSEGV in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, [] { std::raise(SIGSEGV); }); }},
        {"SIGABRT in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, std::abort); }},
        {"SIGBUS in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, readPastTheEndOfAFile); }},
        {"SIGFPE in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, divideByZero); }},
        {"SIGILL in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, [] { std::raise(SIGILL); }); }},
        {"SIGTRAP in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, [] { std::raise(SIGTRAP); }); }},
        {"error in a line of SIGSEGV",
         [] { faultInACrashLine(writeThroughANullPointer, throwError); }},
        {"SIGABRT in a line of SIGABRT", [] { faultInACrashLine(std::abort, std::abort); }},
        {"SIGSEGV in a line of an error",
         [] { faultInACrashLine(throwError, writeThroughANullPointer); }},
        {"SIGABRT in a line of an object", [] { faultInACrashLine(throwObject, std::abort); }},
        {"error in a line of an error", [] { faultInACrashLine(throwError, throwError); }},
        {"fault inside localtime",
         [] {
             inLocalTime = faultInLocalTime;
             static_cast<void>(UninstallerLog::dateFormatter(0));
         }},
        {"error inside localtime",
         [] {
             inLocalTime = [] {
                 inLocalTime = faultInLocalTime;
                 throwError();
             };
             static_cast<void>(UninstallerLog::dateFormatter(0));
         }},
        {"fault in another zone",
         [] {
             ::setenv("TZ", "Asia/Kolkata", 1);
             ::tzset();
             writeThroughANullPointer();
         }},
        {"stack overflow", [] { std::exit(recurse(1)); }},
        {"fault on a thread", [] { onAPlainThread(writeThroughANullPointer); }},
        {"object in a callback", [] { inACallback(throwObject); }},
        {"error in a callback", [] { inACallback(throwError); }},
        {"number in a callback", [] { inACallback(throwNumber); }},
        {"object on the main queue", [] { platform::mainQueue().post(throwObject); }},
        {"error on the main queue", [] { platform::mainQueue().post(throwError); }},
        {"object in the background", [] { platform::utilityQueue().post(throwObject); }},
        {"error in the background", [] { platform::utilityQueue().post(throwError); }},
        {"object on a serial queue", [] { platform::makeSerialQueue("test").post(throwObject); }},
        {"object in a task on main", [] { platform::start(inATaskOnMain(throwObject)); }},
        {"error in a task on main", [] { platform::start(inATaskOnMain(throwError)); }},
        {"object in a background task",
         [] { platform::start(inATaskInTheBackground(throwObject)); }},
        {"error in a background task", [] { platform::start(inATaskInTheBackground(throwError)); }},
        {"object on a plain thread", [] { onAPlainThread(throwObject); }},
        {"error on a plain thread", [] { onAPlainThread(throwError); }},
        {"object on the main thread", throwObject},
        {"error on the main thread", throwError},
        {"fault after the last line",
         [] {
             UninstallerLog::endSession();
             writeThroughANullPointer();
         }},
        {"error after the last line",
         [] {
             UninstallerLog::endSession();
             throwError();
         }},
        {"terminated", [] { std::terminate(); }},
    };
    return all;
}

} // namespace

// These replace the C library's functions for the whole program.
extern "C" {

ssize_t write(int file, const void* bytes, std::size_t size) {
    if (inACrashLine != nullptr &&
        std::string_view(static_cast<const char*>(bytes), size).find("CRASH") !=
            std::string_view::npos) {
        std::exchange(inACrashLine, nullptr)();
    }
    return replaced<decltype(::write)>("write")(file, bytes, size);
}

std::tm* localtime_r(const std::time_t* moment, std::tm* local) {
    return callLocalTime<decltype(::localtime_r)>("localtime_r", moment, local);
}

std::tm* gmtime_r(const std::time_t* moment, std::tm* local) {
    return callLocalTime<decltype(::gmtime_r)>("gmtime_r", moment, local);
}

void tzset() {
    callLocalTime<decltype(::tzset)>("tzset");
}

std::size_t strftime(char* text, std::size_t size, const char* format, const std::tm* local) {
    return callLocalTime<decltype(::strftime)>("strftime", text, size, format, local);
}
}

int main(int argc, char** argv) {
    platform::initializeProcess(argv, environ);
    const platform::objc::AutoreleasePool pool;
    const auto ending = argc == 2 ? endings().find(argv[1]) : endings().end();
    if (ending == endings().end()) {
        std::fputs("usage: crashing_program ENDING\n", stderr);
        return 2;
    }
    UninstallerLog::installCrashHandlers();
    UninstallerLog::fileSessionStart();
    ending->second();
    platform::runMainLoop();
}
