#include "platform/services/UnifiedLog.hpp"

#include <syslog.h>

namespace platform {

// syslog has no handles; this one is the prefix of each line.
UnifiedLog::UnifiedLog(const std::string& subsystem, const std::string& category)
    : handle_(new std::string(subsystem + ":" + category + ": ")) {}

void UnifiedLog::error(const std::string& message) const {
    const auto& prefix = *static_cast<const std::string*>(handle_);
    ::syslog(LOG_USER | LOG_ERR, "%s%s", prefix.c_str(), message.c_str());
}

} // namespace platform
