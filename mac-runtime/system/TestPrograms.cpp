// What the test programs and GoogleTest call and the application does not: mkdtemp(3), mkfifo(2),
// fchmodat(2), utimensat(2), setuid(2), setitimer(2), ftell(3), fdopen(3), strtol(3),
// <mach/task.h>, <wchar.h>.

#include "loader/Failure.hpp"
#include "loader/Program.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/FileNumbers.hpp"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <linux/futex.h>
#include <pwd.h>
#include <regex.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>
#include <vector>

namespace mac {

namespace {

// Calls a function that reports an overflow in errno.
template <class Result>
Result number(Result (*parse)(const char*, char**, int), const char* text, char** end, int base) {
    errno = 0;
    const Result result = parse(text, end, base);
    if (errno != 0) {
        setDarwinErrno(darwinError(errno));
    }
    return result;
}

namespace darwin {

pid_t fork() {
    return checked(::fork());
}

int setuid(uid_t user) {
    return checked(::setuid(user));
}

int setgid(gid_t group) {
    return checked(::setgid(group));
}

int seteuid(uid_t user) {
    return checked(::seteuid(user));
}

char* mkdtemp(char* form) {
    return checkedPointer(::mkdtemp(form));
}

int mkstemp(char* form) {
    return checked(::mkstemp(form));
}

int mkfifo(const char* path, std::uint16_t mode) {
    return checked(::mkfifo(path, mode));
}

int fchmodat(int folder, const char* path, std::uint16_t mode, int flags) {
    return checked(::fchmodat(linuxFolder(folder), path, mode, linuxAtFlags(flags, "fchmodat")));
}

int lchown(const char* path, uid_t user, gid_t group) {
    return checked(::lchown(path, user, group));
}

int remove(const char* path) {
    return checked(std::remove(path));
}

// The microseconds have four bytes.
struct Interval {
    std::int64_t seconds;
    std::int32_t microseconds;
};

struct Timer {
    Interval interval, value;
};

int setitimer(int which, const Timer* timer, Timer* before) {
    constexpr int real = 0;
    if (which != real || before != nullptr) {
        fail("setitimer of %d, or for the timer before", which);
    }
    const itimerval own{{timer->interval.seconds, timer->interval.microseconds},
                        {timer->value.seconds, timer->value.microseconds}};
    return checked(::setitimer(ITIMER_REAL, &own, nullptr));
}

// <sys/stat.h>: UTIME_OMIT has another number.
timespec linuxTime(const timespec& time) {
    constexpr long omit = -2;
    if (time.tv_nsec == omit) {
        return {.tv_sec = 0, .tv_nsec = UTIME_OMIT};
    }
    if (time.tv_nsec < 0) {
        fail("utimensat with %ld nanoseconds", time.tv_nsec);
    }
    return time;
}

int utimensat(int folder, const char* path, const timespec* times, int flags) {
    const timespec own[] = {linuxTime(times[0]), linuxTime(times[1])};
    return checked(
        ::utimensat(linuxFolder(folder), path, &own[0], linuxAtFlags(flags, "utimensat")));
}

long ftell(FILE* stream) {
    return checked(std::ftell(stream));
}

int fileno(FILE* stream) {
    return checked(::fileno(stream));
}

FILE* fdopen(int descriptor, const char* mode) {
    return checkedPointer(::fdopen(descriptor, mode));
}

long strtol(const char* text, char** end, int base) {
    return number(std::strtol, text, end, base);
}

unsigned long strtoull(const char* text, char** end, int base) {
    return number(std::strtoul, text, end, base);
}

std::uint32_t taskSelf = 0;

// Without Mach ports there is no list of threads.
int taskThreads(std::uint32_t, void*, std::uint32_t*) {
    constexpr int failure = 5; // KERN_FAILURE
    return failure;
}

int* argumentCount() {
    return &programArguments().count;
}

char*** arguments() {
    return &programArguments().words;
}

unsigned alarm(unsigned seconds) {
    return ::alarm(seconds);
}

// <pwd.h>'s structure has three fields more.
struct Account {
    char *name, *password;
    std::uint32_t user, group;
    std::int64_t change;
    char *accessClass, *fullName, *home, *shell;
    std::int64_t expire;
};

Account* getpwuid(uid_t user) {
    static Account account;
    static char nothing[] = "";
    const passwd* from = ::getpwuid(user);
    if (from == nullptr) {
        return nullptr;
    }
    account = {from->pw_name, from->pw_passwd, from->pw_uid, from->pw_gid,   0,
               &nothing[0],   from->pw_gecos,  from->pw_dir, from->pw_shell, 0};
    return &account;
}

// <regex.h>'s structure is smaller than this system's, to which it points.
struct Pattern {
    int magic;
    std::size_t groups;
    const char* end;
    regex_t* own;
};

struct Match {
    std::int64_t begin, end;
};

int regcomp(Pattern* pattern, const char* text, int flags) {
    constexpr int extended = 1;
    if (flags != extended) {
        fail("regcomp with the flags %#x, which are not known", flags);
    }
    pattern->own = new regex_t;
    const int error = ::regcomp(pattern->own, text, REG_EXTENDED);
    pattern->groups = error == 0 ? pattern->own->re_nsub : 0;
    if (error != 0) {
        delete pattern->own;
        pattern->own = nullptr;
    }
    return error;
}

int regexec(const Pattern* pattern, const char* text, std::size_t count, Match* matches,
            int flags) {
    if (flags != 0) {
        fail("regexec with the flags %#x, which are not known", flags);
    }
    std::vector<regmatch_t> own(count);
    const int result = ::regexec(pattern->own, text, count, own.data(), 0);
    for (std::size_t i = 0; i < count && result == 0; ++i) {
        matches[i] = {own[i].rm_so, own[i].rm_eo};
    }
    return result;
}

void regfree(Pattern* pattern) {
    ::regfree(pattern->own);
    delete pattern->own;
}

// xnu's <sys/ulock.h>: waits while a word has a given value. A futex has four bytes; of a word of
// eight bytes it compares the lower half, which comes first and changes with each increment.
constexpr std::uint32_t compareAndWait = 1;
constexpr std::uint32_t compareAndWait64 = 5;

void checkOperation(std::uint32_t operation) {
    if (operation != compareAndWait && operation != compareAndWait64) {
        fail("a ulock of the kind %#x, which is not known", operation);
    }
}

int ulockWait(std::uint32_t operation, void* word, std::uint64_t value, std::uint32_t timeout) {
    checkOperation(operation);
    if (timeout != 0) {
        fail("a ulock with a time limit");
    }
    return static_cast<int>(checked(::syscall(SYS_futex, word, FUTEX_WAIT_PRIVATE,
                                              static_cast<std::uint32_t>(value), nullptr)));
}

int ulockWake(std::uint32_t operation, void* word, std::uint64_t) {
    constexpr std::uint32_t all = 0x100;
    checkOperation(operation & ~all);
    const int howMany = (operation & all) != 0 ? INT_MAX : 1;
    return static_cast<int>(checked(::syscall(SYS_futex, word, FUTEX_WAKE_PRIVATE, howMany)));
}

// The C++ library creates its wide streams at the start and never uses them; GoogleTest can send
// its results over the network.
[[noreturn]] void notThere() {
    fail("a function that only the tests' library names was called");
}

FILE* standardInput = stdin;

} // namespace darwin

} // namespace

Symbols testProgramSymbols() {
    static const Symbol symbols[] = {
        {"_fork", address(darwin::fork)},
        {"_setuid", address(darwin::setuid)},
        {"_setgid", address(darwin::setgid)},
        {"_seteuid", address(darwin::seteuid)},
        {"_mkdtemp", address(darwin::mkdtemp)},
        {"_mkstemp", address(darwin::mkstemp)},
        {"_mkfifo", address(darwin::mkfifo)},
        {"_fchmodat", address(darwin::fchmodat)},
        {"_lchown", address(darwin::lchown)},
        {"_remove", address(darwin::remove)},
        {"_utimensat", address(darwin::utimensat)},
        {"_setitimer", address(darwin::setitimer)},
        {"_ftell", address(darwin::ftell)},
        {"_fileno", address(darwin::fileno)},
        {"_fdopen", address(darwin::fdopen)},
        {"_strtol", address(darwin::strtol)},
        {"_strtoull", address(darwin::strtoull)},
        {"_strdup", address(::strdup)},
        {"_alarm", address(darwin::alarm)},
        {"_getpwuid", address(darwin::getpwuid)},
        {"_regcomp", address(darwin::regcomp)},
        {"_regexec", address(darwin::regexec)},
        {"_regfree", address(darwin::regfree)},
        {"___stdinp", &darwin::standardInput},
        {"_mach_task_self_", &darwin::taskSelf},
        {"_task_threads", address(darwin::taskThreads)},
        {"___ulock_wait", address(darwin::ulockWait)},
        {"___ulock_wake", address(darwin::ulockWake)},
        {"_vm_deallocate", address(darwin::notThere)},
        {"__NSGetArgc", address(darwin::argumentCount)},
        {"__NSGetArgv", address(darwin::arguments)},
        {"__Exit", address(::_Exit)},
        {"_connect", address(darwin::notThere)},
        {"_freeaddrinfo", address(darwin::notThere)},
        {"_gai_strerror", address(darwin::notThere)},
        {"_getaddrinfo", address(darwin::notThere)},
        {"_socket", address(darwin::notThere)},
        {"_getwc", address(darwin::notThere)},
        {"_ungetwc", address(darwin::notThere)},
        {"_fputwc", address(darwin::notThere)},
    };
    return symbols;
}

} // namespace mac
