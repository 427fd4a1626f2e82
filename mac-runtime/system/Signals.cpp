#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/SignalNumbers.hpp"

#include <cstddef>
#include <pthread.h>

// sigaction(2), sigaltstack(2), sigwait(2) and others with <sys/signal.h>'s numbers and structures.

namespace mac {

namespace {

constexpr int mostSignals = 32;

struct Pair {
    int darwin, ofLinux;
};

// Signals whose numbers differ. SIGEMT and SIGINFO exist on a Mac alone.
constexpr Pair pairs[] = {{7, 0},        {10, SIGBUS},  {12, SIGSYS},  {16, SIGURG},
                          {17, SIGSTOP}, {18, SIGTSTP}, {19, SIGCONT}, {20, SIGCHLD},
                          {23, SIGIO},   {29, 0},       {30, SIGUSR1}, {31, SIGUSR2}};

struct Action {
    void (*handler)(int);
    DarwinSignals mask;
    int flags;
};

constexpr int onStack = 0x1;
constexpr int restart = 0x2;
constexpr int resetHandler = 0x4;
constexpr int noChildStop = 0x8;
constexpr int noDefer = 0x10;

struct FlagPair {
    int darwin;
    unsigned ofLinux;
};

constexpr FlagPair actionFlags[] = {{onStack, SA_ONSTACK},
                                    {restart, SA_RESTART},
                                    {resetHandler, SA_RESETHAND},
                                    {noChildStop, SA_NOCLDSTOP},
                                    {noDefer, SA_NODEFER}};

// The program's actions, by Linux's signal numbers.
Action actions[NSIG];

// The handler gets Darwin's number.
void relay(int number) {
    actions[number].handler(darwinSignal(number));
}

bool isHandler(const Action& action) {
    return reinterpret_cast<std::uintptr_t>(action.handler) > 1;
}

unsigned linuxActionFlags(int flags) {
    unsigned result = 0;
    for (const auto& [darwin, ofLinux] : actionFlags) {
        if ((flags & darwin) != 0) {
            result |= ofLinux;
            flags &= ~darwin;
        }
    }
    if (flags != 0) {
        fail("sigaction with the flags %#x, which are not known", static_cast<unsigned>(flags));
    }
    return result;
}

int knownSignal(int darwin, const char* function) {
    const int number = linuxSignal(darwin);
    if (number == 0) {
        fail("%s of the signal %d, which Linux has not", function, darwin);
    }
    return number;
}

} // namespace

int linuxSignal(int darwin) {
    for (const auto& [number, ofLinux] : pairs) {
        if (number == darwin) {
            return ofLinux;
        }
    }
    return darwin > 0 && darwin < mostSignals ? darwin : 0;
}

int darwinSignal(int ofLinux) {
    for (const auto& [darwin, number] : pairs) {
        if (number == ofLinux) {
            return darwin;
        }
    }
    // SIGSTKFLT and SIGPWR exist on Linux alone.
    return ofLinux;
}

sigset_t linuxSignals(DarwinSignals darwin) {
    sigset_t set;
    sigemptyset(&set);
    for (int number = 1; number < mostSignals; ++number) {
        if ((darwin >> (number - 1) & 1) != 0 && linuxSignal(number) != 0) {
            sigaddset(&set, linuxSignal(number));
        }
    }
    return set;
}

namespace {

DarwinSignals darwinSignals(const sigset_t& set) {
    DarwinSignals result = 0;
    for (int number = 1; number < mostSignals; ++number) {
        if (linuxSignal(number) != 0 && sigismember(&set, linuxSignal(number)) == 1) {
            result |= DarwinSignals{1} << (number - 1);
        }
    }
    return result;
}

namespace darwin {

int sigaction(int darwinNumber, const Action* action, Action* old) {
    const int number = knownSignal(darwinNumber, "sigaction");
    const Action before = actions[number];
    struct sigaction was{};
    if (action == nullptr) {
        if (checked(::sigaction(number, nullptr, &was)) != 0) {
            return -1;
        }
    } else {
        struct sigaction set{};
        set.sa_handler = isHandler(*action) ? relay : action->handler;
        set.sa_mask = linuxSignals(action->mask);
        set.sa_flags = static_cast<int>(linuxActionFlags(action->flags));
        // Stored before sigaction, since the signal may arrive at once.
        actions[number] = *action;
        if (checked(::sigaction(number, &set, &was)) != 0) {
            actions[number] = before;
            return -1;
        }
    }
    if (old != nullptr) {
        *old = was.sa_handler == relay ? before : Action{was.sa_handler, 0, 0};
    }
    return 0;
}

// BSD semantics: interrupted calls are restarted, and the handler stays installed.
void (*signal(int number, void (*handler)(int)))(int) {
    const Action action{handler, 0, restart};
    Action old{};
    return sigaction(number, &action, &old) == 0 ? old.handler : SIG_ERR;
}

int raise(int number) {
    return checked(::raise(knownSignal(number, "raise")));
}

int kill(pid_t process, int number) {
    return checked(::kill(process, number == 0 ? 0 : knownSignal(number, "kill")));
}

struct Stack {
    void* place;
    std::size_t size;
    int flags;
};

int sigaltstack(const Stack* stack, Stack* old) {
    constexpr int disable = 4;
    constexpr std::size_t smallest = 32768; // MINSIGSTKSZ
    stack_t set{};
    if (stack != nullptr) {
        if ((stack->flags & disable) == 0 && stack->size < smallest) {
            return failWith(DarwinError::noMemory);
        }
        set.ss_sp = stack->place;
        set.ss_size = stack->size;
        set.ss_flags = (stack->flags & disable) != 0 ? SS_DISABLE : 0;
    }
    stack_t was{};
    const int result = checked(::sigaltstack(stack == nullptr ? nullptr : &set, &was));
    if (result == 0 && old != nullptr) {
        *old = {was.ss_sp, was.ss_size, (was.ss_flags & SS_DISABLE) != 0 ? disable : was.ss_flags};
    }
    return result;
}

// SIG_BLOCK, SIG_UNBLOCK and SIG_SETMASK are numbered from 1 on a Mac and from 0 here.
int pthread_sigmask(int how, const DarwinSignals* set, DarwinSignals* old) {
    if (how < 1 || how > 3) {
        return static_cast<int>(DarwinError::invalidArgument);
    }
    const sigset_t wanted = linuxSignals(set == nullptr ? 0 : *set);
    sigset_t was;
    const int error = ::pthread_sigmask(how - 1, set == nullptr ? nullptr : &wanted, &was);
    if (old != nullptr) {
        *old = darwinSignals(was);
    }
    return darwinError(error);
}

int sigprocmask(int how, const DarwinSignals* set, DarwinSignals* old) {
    const int error = pthread_sigmask(how, set, old);
    if (error != 0) {
        setDarwinErrno(error);
    }
    return error == 0 ? 0 : -1;
}

int sigpending(DarwinSignals* set) {
    sigset_t pending;
    const int result = checked(::sigpending(&pending));
    *set = darwinSignals(pending);
    return result;
}

int sigwait(const DarwinSignals* set, int* number) {
    const sigset_t wanted = linuxSignals(*set);
    int arrived = 0;
    const int error = ::sigwait(&wanted, &arrived);
    *number = darwinSignal(arrived);
    return darwinError(error);
}

} // namespace darwin

} // namespace

Symbols signalSymbols() {
    static const Symbol symbols[] = {
        {"_sigaction", address(darwin::sigaction)},
        {"_signal", address(darwin::signal)},
        {"_raise", address(darwin::raise)},
        {"_kill", address(darwin::kill)},
        {"_sigaltstack", address(darwin::sigaltstack)},
        {"_pthread_sigmask", address(darwin::pthread_sigmask)},
        {"_sigprocmask", address(darwin::sigprocmask)},
        {"_sigpending", address(darwin::sigpending)},
        {"_sigwait", address(darwin::sigwait)},
    };
    return symbols;
}

} // namespace mac
