#pragma once

#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>

namespace platform {

// What the system says of itself, of the user's folders and of the dates of files.

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
[[nodiscard]] inline std::string textUpToNul(std::span<const char> bytes) {
    const auto end = std::ranges::find(bytes, '\0');
    if (end == bytes.end()) {
        std::fputs("kovra Uninstaller: a system-control string has no end.\n", stderr);
        std::abort();
    }
    return repairedUtf8({bytes.begin(), end});
}

/// The current user's home folder, read anew at each call; ends in no slash, unless it is the root.
/// Any thread.
[[nodiscard]] std::string homeDirectory();

/// The current user's folder for temporary files; ends in a slash. Any thread.
[[nodiscard]] std::string temporaryDirectory();

using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// When the item at the path was created, a link itself and not its target; nothing when there is
/// none or its volume does not know. Any thread.
[[nodiscard]] std::optional<FileTime> creationDate(const std::string& path);

} // namespace platform
