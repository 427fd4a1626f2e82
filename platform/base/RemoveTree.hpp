#pragma once

#include <optional>
#include <string>
#include <system_error>

namespace platform {

/// Why something of a tree is still there.
struct RemovalFailure {
    /// The system's code for what could not be removed first; EBUSY where a volume is mounted.
    std::error_code error;

    /// Where a volume is mounted that keeps the tree; empty when there is none. Not always UTF-8.
    std::string mountPoint;

    /// The reason in words: the system's own, or "a volume is mounted at " and where.
    [[nodiscard]] std::string reason() const;
};

/// Removes whatever stands at the path, a folder with everything in it. A link is removed as a
/// link, inside the folder too, and one that takes the place of a folder during the run is never
/// followed: everything below the top is reached through descriptors.
///
/// A volume that is mounted inside the folder, or over it, is no part of it: nothing on it is
/// touched, and its mount point and the folders above that stay. So it is with a bind mount, of a
/// single file too, where the system tells one. The folder that the path's last component stands
/// in may be on any volume.
///
/// What cannot be removed does not keep the rest from going, and what somebody else removes during
/// the run is gone. Nothing means that nothing stands there any more, or ever did; otherwise it is
/// the reason that came first, but a mounted volume before any other. EINVAL for a path that holds
/// a NUL byte. Rights are not changed to get at what is in a locked folder. Any depth, a bounded
/// number of descriptors; blocks; any thread.
[[nodiscard]] std::optional<RemovalFailure> removeTree(const std::string& path);

} // namespace platform
