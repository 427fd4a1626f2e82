#pragma once

#include <cstdint>
#include <mach-o/loader.h>
#include <type_traits>

// The system's log as its header's macros call it. Where that header is, the compiler holds these
// declarations against it.
#if __has_include(<os/log.h>)
#include <os/log.h>
static_assert(std::is_same_v<std::underlying_type_t<os_log_type_t>, std::uint8_t>);
#else
using os_log_type_t = std::uint8_t;
#endif

inline constexpr os_log_type_t osLogTypeError{0x10};
#if __has_include(<os/log.h>)
static_assert(osLogTypeError == OS_LOG_TYPE_ERROR);
#endif

extern "C" {
using os_log_t = struct os_log_s*;
os_log_t os_log_create(const char* subsystem, const char* category);
bool os_log_type_enabled(os_log_t log, os_log_type_t type);
void _os_log_error_impl(void* dso, os_log_t log, os_log_type_t type, const char* format,
                        std::uint8_t* buffer, std::uint32_t size);
extern struct mach_header __dso_handle;
}
