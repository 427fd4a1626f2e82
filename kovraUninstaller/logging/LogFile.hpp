#pragma once

#include "platform/base/UniqueFd.hpp"

#include <atomic>
#include <string>
#include <string_view>

namespace kovra {

/// The open log file. Each line is one atomic append, also among other writers.
class LogFile {
  public:
    /// Creates the folder and the file where they are missing, after moving a file of more than
    /// 1,000,000 bytes to `oldName`. Failures are ignored; without an open file all lines are lost.
    explicit LogFile(const std::string& folder);

    /// Any thread; safe in a signal handler.
    void append(std::string_view line);

    /// Appends the last line, after which crash lines alone are accepted. Lines that other threads
    /// are appending at this moment come before it; later ones are dropped. Any thread, but not in
    /// a signal handler.
    void appendLast(std::string_view line);

    /// Appends a crash line, also after the last line: the program may crash while it exits. Any
    /// thread; safe in a signal handler.
    void appendCrash(std::string_view line) const { write(line); }

    static constexpr const char* name = "uninstall.log";
    static constexpr const char* oldName = "uninstall.old.log";

  private:
    void write(std::string_view line) const;

    platform::UniqueFd descriptor_;
    std::atomic<int> appending_ = 0;
    std::atomic<bool> hasEnded_ = false;
};

} // namespace kovra
