#pragma once

#include <string_view>

namespace platform {

/// Whether the system takes the whole path for one. It would read a path that holds a NUL byte, as
/// the output of a tool can, up to that byte only, and work on something else: what takes paths
/// here refuses these. Any thread.
[[nodiscard]] inline bool isWholePath(std::string_view path) {
    return path.find('\0') == std::string_view::npos;
}

} // namespace platform
