#pragma once

#include <string>
#include <system_error>

namespace platform {

/// Removes whatever stands at the path, a folder with everything in it. A link is removed as a
/// link, inside the folder too, and one that takes the place of a folder during the run is never
/// followed: everything below the top is reached through descriptors.
///
/// What cannot be removed does not keep the rest from going. No error means that all of it is
/// gone; otherwise the system's code of the first failure, a path with nothing at it included.
/// Rights are not changed to get at what is in a locked folder. Any depth, a bounded number of
/// descriptors; blocks; any thread.
[[nodiscard]] std::error_code removeTree(const std::string& path);

} // namespace platform
