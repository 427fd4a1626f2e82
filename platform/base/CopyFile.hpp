#pragma once

#include <string>
#include <system_error>

namespace platform {

/// Copies the bytes of a regular file into a new file that its owner may write and all may read.
/// Whatever stands at the target already, a link included, is left alone and makes the copy fail.
/// Gives the system's code on failure, no error otherwise: EINVAL for a source that is neither file
/// nor folder, and for a path that holds a NUL byte. A target that was begun is removed.
/// Any thread.
[[nodiscard]] std::error_code copyFile(const std::string& from, const std::string& to);

} // namespace platform
