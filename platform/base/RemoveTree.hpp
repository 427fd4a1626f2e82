#pragma once

#include <string>
#include <system_error>

namespace platform {

/// Removes whatever stands at the path, a folder with everything in it. A link is removed as a
/// link, inside the folder too, and one that takes the place of a folder during the run is never
/// followed: everything below the top is reached through descriptors.
///
/// A volume that is mounted inside the folder is no part of it: its content stays, and so do the
/// folders above it, with EXDEV.
///
/// What cannot be removed does not keep the rest from going, and what somebody else removes during
/// the run is gone. No error means that nothing of it stands there any more; otherwise the system's
/// code of the first failure, a path with nothing at it included, and
/// EINVAL for one that holds a NUL byte. Rights are not changed to get at
/// what is in a locked folder. Any depth, a bounded number of descriptors; blocks; any thread.
[[nodiscard]] std::error_code removeTree(const std::string& path);

} // namespace platform
