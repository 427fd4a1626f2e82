#include "kovraUninstaller/logging/CrashLines.hpp"
#include "kovraUninstaller/logging/LogDate.hpp"
#include "kovraUninstaller/logging/LogFile.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>

namespace kovra {

namespace {

// Read when the handlers are installed, and never destroyed.
const LocalZone* zone = nullptr;

// Whether a crash line is on its way to the log. What fails meanwhile, on whichever thread, would
// most likely fail at a second line too: it ends the process without one.
std::atomic<bool> isWriting = false;
static_assert(std::atomic<bool>::is_always_lock_free);

// A stack that has run over leaves no room for a handler, which therefore has a stack of its own
// on the main thread.
void giveHandlersAStack() {
    alignas(std::max_align_t) static std::array<std::byte, 65536> room;
    stack_t stack{};
    stack.ss_sp = room.data();
    stack.ss_size = room.size();
    ::sigaltstack(&stack, nullptr);
}

} // namespace

// The program aborts when this returns, and the abort is logged in its turn.
void UninstallerLog::logUncaughtException(const platform::UncaughtException& exception) noexcept {
    const auto lines = crashLines(exception);
    if (isWriting.exchange(true)) {
        return;
    }
    for (const std::string& line : lines) {
        fileHandle().appendCrash(crashLogLine(line, std::time(nullptr), *zone));
    }
    isWriting = false;
}

// Ends the process as the signal demands, so that the system makes its own crash report.
void UninstallerLog::logSignal(int signal) noexcept {
    if (!isWriting.exchange(true)) {
        fileHandle().appendCrash(CrashSignalLine(signal, std::time(nullptr), *zone).text());
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void UninstallerLog::installCrashHandlers() {
    zone = new LocalZone(std::time(nullptr));
    platform::setUncaughtExceptionHandler(logUncaughtException);
    giveHandlersAStack();
    struct sigaction action{};
    action.sa_handler = logSignal;
    // A handler must hear of its own faults too. Blocked, as a signal is while it is handled, the
    // fault would not end the process on every system but come again and again.
    action.sa_flags = SA_ONSTACK | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTRAP}) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace kovra
