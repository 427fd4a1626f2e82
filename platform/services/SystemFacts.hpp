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

// Facts that the system knows: its version, the user's folders, files' dates of creation.

struct OperatingSystemVersion {
    long major = 0;
    long minor = 0;
    long patch = 0;
};

[[nodiscard]] OperatingSystemVersion operatingSystemVersion();

/// The value of a sysctl string such as "kern.osversion" or "hw.model". Aborts when the system
/// returns none; see `textUpToNul`.
[[nodiscard]] std::string systemControlString(const char* name);

/// The bytes before the first NUL as text, ill-formed UTF-8 replaced. Aborts with a message on
/// standard error when there is no NUL: the system's answer cannot be trusted then.
[[nodiscard]] inline std::string textUpToNul(std::span<const char> bytes) {
    const auto end = std::ranges::find(bytes, '\0');
    if (end == bytes.end()) {
        std::fputs("kovra Uninstaller: a system-control string has no end.\n", stderr);
        std::abort();
    }
    return repairedUtf8({bytes.begin(), end});
}

/// The current user's home folder, read anew at each call; without a slash at the end, unless it is
/// the root.
[[nodiscard]] std::string homeDirectory();

/// The current user's folder for temporary files, with a slash at the end.
[[nodiscard]] std::string temporaryDirectory();

using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// When the item at the path was created, a link itself and not its target; nothing when it does
/// not exist or its volume does not record it.
[[nodiscard]] std::optional<FileTime> creationDate(const std::string& path);

} // namespace platform
