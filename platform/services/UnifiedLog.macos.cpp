#include "platform/services/UnifiedLog.hpp"

#include "platform/services/SystemSymbols.macos.hpp"

namespace platform {

UnifiedLog::UnifiedLog(const std::string& subsystem, const std::string& category)
    : handle_(os_log_create(subsystem.c_str(), category.c_str())) {}

void UnifiedLog::error(const std::string& message) const {
    // A log entry holds the offset of its format string in the program file, so the string must be
    // in this section. Its type is regular: a linker may merge sections of C strings.
    static const char format[] __attribute__((section("__TEXT,__oslogstring"))) = "%{public}s";
    auto* log = static_cast<os_log_t>(handle_);
    if (!os_log_type_enabled(log, osLogTypeError)) {
        return;
    }
    alignas(16) std::uint8_t buffer[__builtin_os_log_format_buffer_size("%{public}s", "")];
    __builtin_os_log_format(buffer, "%{public}s", message.c_str());
    _os_log_error_impl(&__dso_handle, log, osLogTypeError, format, buffer, sizeof buffer);
}

} // namespace platform
