#pragma once

#include "platform/base/UniqueFd.hpp"

#include <atomic>
#include <string>
#include <string_view>

namespace kovra {

/// The open log file. A line is one write at the file's end, whoever else writes at the same time.
class LogFile {
  public:
    /// Creates the folder and the file where they are missing and moves a file of more than
    /// 1,000,000 bytes aside first. Whatever fails is passed over; a file that cannot be opened
    /// leaves a log that swallows its lines.
    explicit LogFile(const std::string& folder);

    /// Any thread, and inside a signal handler: takes no lock and no memory.
    void append(std::string_view line);

    /// Appends a line after which there will be none but those of a crash: what others append from
    /// now on is dropped, and what they are appending at the moment comes first. Not in a signal
    /// handler.
    void appendLast(std::string_view line);

    /// Appends a line that tells of a crash, behind the last one too: a program may crash while it
    /// ends. Any thread, and inside a signal handler: takes no lock and no memory.
    void appendCrash(std::string_view line) const { write(line); }

    static constexpr const char* name = "uninstall.log";
    static constexpr const char* oldName = "uninstall.old.log";

  private:
    void write(std::string_view line) const;

    platform::UniqueFd descriptor;
    std::atomic<int> appending = 0;
    std::atomic<bool> hasEnded = false;
};

} // namespace kovra
