#pragma once

#include <string>

namespace platform {

/// A handle of the system's log, which on Linux is syslog. Never freed.
class UnifiedLog {
  public:
    UnifiedLog(const std::string& subsystem, const std::string& category);

    /// Logs a message at the error level, as public.
    void error(const std::string& message) const;

  private:
    void* handle_; ///< on a Mac an os_log_t
};

} // namespace platform
