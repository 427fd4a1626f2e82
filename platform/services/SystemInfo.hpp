#pragma once

#include <span>
#include <string>

namespace platform {

struct OperatingSystemVersion {
    long major = 0;
    long minor = 0;
    long patch = 0;
};

[[nodiscard]] OperatingSystemVersion operatingSystemVersion();

/// A system-control string such as "kern.osversion" or "hw.model". Any thread.
/// A value without a NUL byte stops the program; see `textUpToNul`.
[[nodiscard]] std::string systemControlString(const char* name);

/// The bytes before the first NUL as text, ill-formed UTF-8 replaced. Bytes without a NUL, none
/// at all included, are a system that cannot be trusted: says so on standard error and aborts.
[[nodiscard]] std::string textUpToNul(std::span<const char> bytes);

} // namespace platform
