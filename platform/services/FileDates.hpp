#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace platform {

using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// When the item at the path was created, a link itself and not its target; nothing when there is
/// none or its volume does not know. Any thread.
[[nodiscard]] std::optional<FileTime> creationDate(const std::string& path);

} // namespace platform
