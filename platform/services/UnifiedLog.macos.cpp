#include "platform/services/UnifiedLog.hpp"

#include <cstdint>

// The system's log as its headers' macros call it.
extern "C" {
void* os_log_create(const char* subsystem, const char* category);
bool os_log_type_enabled(void* log, std::uint8_t type);
void _os_log_error_impl(void* dso, void* log, std::uint8_t type, const char* format,
                        std::uint8_t* buffer, std::uint32_t size);
extern char __dso_handle;
}

namespace platform {

UnifiedLog::UnifiedLog(const std::string& subsystem, const std::string& category)
    : handle(os_log_create(subsystem.c_str(), category.c_str())) {}

void UnifiedLog::error(const std::string& message) const {
    constexpr std::uint8_t errorType = 0x10;
    // The log daemon finds formats by their place in the file, so they have a section of their own.
    static const char format[] __attribute__((section("__TEXT,__oslogstring,cstring_literals"))) =
        "%{public}s";
    if (!os_log_type_enabled(handle, errorType)) {
        return;
    }
    alignas(16) std::uint8_t buffer[__builtin_os_log_format_buffer_size("%{public}s", "")];
    __builtin_os_log_format(buffer, "%{public}s", message.c_str());
    _os_log_error_impl(&__dso_handle, handle, errorType, format, buffer, sizeof buffer);
}

} // namespace platform
