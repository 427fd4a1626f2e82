#pragma once

#include <string>

namespace platform {

/// A handle on the system's own log, kept until the process ends. Any thread.
class UnifiedLog {
  public:
    UnifiedLog(const std::string& subsystem, const std::string& category);

    /// Records a message at the error level, readable for everybody who may read the log.
    void error(const std::string& message) const;

  private:
    void* handle; ///< the system's own
};

} // namespace platform
