#include "platform/services/UnifiedLog.hpp"

#include <syslog.h>

namespace platform {

// There are no handles here: what a line begins with stands for one.
UnifiedLog::UnifiedLog(const std::string& subsystem, const std::string& category)
    : handle(new std::string(subsystem + ":" + category + ": ")) {}

void UnifiedLog::error(const std::string& message) const {
    const auto& beginning = *static_cast<const std::string*>(handle);
    ::syslog(LOG_USER | LOG_ERR, "%s%s", beginning.c_str(), message.c_str());
}

} // namespace platform
