#include "kovraUninstaller/logging/CrashLines.hpp"
#include "kovraUninstaller/logging/LogFile.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"

#include <array>
#include <csignal>
#include <cstddef>

namespace kovra {

namespace {

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

void UninstallerLog::logUncaughtException(const platform::UncaughtException& exception) noexcept {
    for (const std::string& line : crashLines(exception)) {
        fileCrash(line);
    }
}

// Ends the process as the signal demands, so that the system makes its own crash report.
void UninstallerLog::logSignal(int signal) {
    fileHandle().appendCrash(CrashSignalLine(signal).text());
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void UninstallerLog::installCrashHandlers() {
    platform::setUncaughtExceptionHandler(logUncaughtException);
    giveHandlersAStack();
    struct sigaction action{};
    action.sa_handler = logSignal;
    action.sa_flags = SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTRAP}) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace kovra
