#include "kovraUninstaller/logging/CrashLines.hpp"

#include "kovraUninstaller/logging/LogDate.hpp"
#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <charconv>
#include <csignal>

namespace kovra {

namespace {

constexpr std::string_view crashMark = "‼️ CRASH: ";

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

SignalName::SignalName(int signal) {
    const std::string_view known = knownName(signal);
    const std::string_view beginning = known.empty() ? "SIG" : known;
    char* end = std::ranges::copy(beginning, characters.data()).out;
    if (known.empty()) {
        end = std::to_chars(end, characters.data() + characters.size(), signal).ptr;
    }
    length = static_cast<std::size_t>(end - characters.data());
}

std::string crashLogLine(std::string_view text, std::time_t moment, const LocalZone& zone) {
    std::string line("[");
    line.append(LogDate(moment, zone).text()).append("] ").append(text).append("\n");
    return line;
}

CrashSignalLine::CrashSignalLine(int signal, std::time_t moment, const LocalZone& zone) {
    append("[");
    append(LogDate(moment, zone).text());
    append("] ");
    append(crashMark);
    append(SignalName(signal).text());
    append("\n");
}

void CrashSignalLine::append(std::string_view piece) {
    piece = piece.substr(0, characters.size() - length);
    std::ranges::copy(piece, characters.data() + length);
    length += piece.size();
}

} // namespace kovra
