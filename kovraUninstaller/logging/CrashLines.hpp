#pragma once

#include "platform/services/UncaughtException.hpp"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kovra {

/// What the log says of an uncaught exception, line by line: its name and reason, then the first
/// ten calls that led to it. Any thread.
[[nodiscard]] std::vector<std::string> crashLines(const platform::UncaughtException& exception);

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

/// A whole line of the log, time in front and line feed behind, made without allocating memory.
class CrashSignalLine {
  public:
    explicit CrashSignalLine(int signal);

    [[nodiscard]] std::string_view text() const { return {characters.data(), length}; }

  private:
    void append(std::string_view piece);

    std::array<char, 128> characters{};
    std::size_t length = 0;
};

} // namespace kovra
