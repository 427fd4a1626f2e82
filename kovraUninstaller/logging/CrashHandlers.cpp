#include "kovraUninstaller/logging/CrashHandlers.hpp"

#include "kovraUninstaller/logging/LogFile.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <csignal>
#include <cstddef>

namespace kovra {

namespace {

constexpr std::string_view crashMark = "‼️ CRASH: ";

// Whether a crash line is being written. A second fault meanwhile, on any thread, ends the process
// without a line of its own: writing that one would most likely fault again.
std::atomic<bool> isWriting = false;
static_assert(std::atomic<bool>::is_always_lock_free);

std::string_view knownName(int signal) {
    switch (signal) {
    case SIGILL: return "SIGILL";
    case SIGTRAP: return "SIGTRAP";
    case SIGABRT: return "SIGABRT";
    case SIGFPE: return "SIGFPE";
    case SIGBUS: return "SIGBUS";
    case SIGSEGV: return "SIGSEGV";
    default: return {};
    }
}

// After a stack overflow the handlers need a stack of their own. The main thread alone has one.
void installSignalStack() {
    alignas(std::max_align_t) static std::array<std::byte, 65536> room;
    stack_t stack{};
    stack.ss_sp = room.data();
    stack.ss_size = room.size();
    ::sigaltstack(&stack, nullptr);
}

} // namespace

std::vector<std::string> crashLines(const platform::UncaughtException& exception) {
    constexpr std::size_t mostCalls = 10;
    const std::string reason = exception.reason.value_or("unknown");
    std::vector<std::string> lines{std::string(crashMark) +
                                   platform::repairedUtf8(exception.name + " — " + reason)};
    const auto& symbols = exception.callStackSymbols;
    for (std::size_t i = 0; i < std::min(mostCalls, symbols.size()); ++i) {
        lines.push_back("  " + platform::repairedUtf8(symbols[i]));
    }
    return lines;
}

FixedText<16> signalName(int signal) {
    FixedText<16> name;
    const std::string_view known = knownName(signal);
    if (!known.empty()) {
        name.append(known);
        return name;
    }
    std::array<char, 12> number{};
    const char* end = std::to_chars(number.data(), number.data() + number.size(), signal).ptr;
    name.append("SIG");
    name.append({number.data(), static_cast<std::size_t>(end - number.data())});
    return name;
}

FixedText<128> crashSignalLine(int signal, std::time_t moment, const LocalZone& zone) {
    FixedText<128> line;
    line.append(logLineStart(moment, zone).text());
    line.append(crashMark);
    line.append(signalName(signal).text());
    line.append("\n");
    return line;
}

// The program aborts after this, and the handler below logs the abort.
void UninstallerLog::logUncaughtException(const platform::UncaughtException& exception) noexcept {
    const auto lines = crashLines(exception);
    if (isWriting.exchange(true)) {
        return;
    }
    for (const std::string& line : lines) {
        fileHandle().appendCrash(logLine(line));
    }
    isWriting = false;
}

// Ends the process by the same signal, so that the system writes its crash report.
void UninstallerLog::logSignal(int signal) noexcept {
    if (!isWriting.exchange(true)) {
        fileHandle().appendCrash(
            crashSignalLine(signal, std::time(nullptr), LocalZone::ofProcess()).text());
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void UninstallerLog::installCrashHandlers() {
    static_cast<void>(LocalZone::ofProcess()); // read before a handler needs it
    platform::setUncaughtExceptionHandler(logUncaughtException);
    installSignalStack();
    struct sigaction action{};
    action.sa_handler = logSignal;
    // A fault inside the handler must reach it too: while the signal is blocked, the fault would
    // not end the process on every system but come again and again.
    action.sa_flags = SA_ONSTACK | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGTRAP}) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace kovra
