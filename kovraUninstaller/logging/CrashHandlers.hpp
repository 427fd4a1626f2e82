#pragma once

#include "kovraUninstaller/logging/LogLine.hpp"
#include "platform/services/UncaughtException.hpp"

#include <ctime>
#include <string>
#include <vector>

namespace kovra {

/// What the log says of an uncaught exception, line by line: its name and reason, then the first
/// ten calls that led to it. Any thread.
[[nodiscard]] std::vector<std::string> crashLines(const platform::UncaughtException& exception);

/// The name of a signal as a crash line has it: "SIGSEGV", and "SIG" with the number for one that
/// is none of the six. Any thread; safe in a signal handler.
[[nodiscard]] FixedText<16> signalName(int signal);

/// The whole line that the log gets for a signal. Any thread; safe in a signal handler.
[[nodiscard]] FixedText<128> crashSignalLine(int signal, std::time_t moment, const LocalZone& zone);

} // namespace kovra
