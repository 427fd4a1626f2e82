#pragma once

#include "platform/services/UncaughtException.hpp"

#include <array>
#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace kovra {

class LocalZone;

/// What the log says of an uncaught exception, line by line: its name and reason, then the first
/// ten calls that led to it. Any thread.
[[nodiscard]] std::vector<std::string> crashLines(const platform::UncaughtException& exception);

/// A whole line of the log with that text: the time in front and a line feed behind. Takes no lock
/// but the memory's. Any thread.
[[nodiscard]] std::string crashLogLine(std::string_view text, std::time_t moment,
                                       const LocalZone& zone);

/// The name of a signal as a crash line has it: "SIGSEGV", and "SIG" with the number for one that
/// is none of the six. May be made inside a signal handler.
class SignalName {
  public:
    explicit SignalName(int signal);

    [[nodiscard]] std::string_view text() const { return {characters.data(), length}; }

  private:
    std::array<char, 16> characters{};
    std::size_t length = 0;
};

/// The same for a signal, made without allocating memory. May be made inside a signal handler.
class CrashSignalLine {
  public:
    CrashSignalLine(int signal, std::time_t moment, const LocalZone& zone);

    [[nodiscard]] std::string_view text() const { return {characters.data(), length}; }

  private:
    void append(std::string_view piece);

    std::array<char, 128> characters{};
    std::size_t length = 0;
};

} // namespace kovra
