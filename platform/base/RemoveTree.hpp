#pragma once

#include <optional>
#include <string>
#include <system_error>

namespace platform {

/// Why a tree was not removed completely.
struct RemovalFailure {
    /// The error of the first removal that failed; EBUSY for a mounted volume.
    std::error_code error;

    /// The mount point of a volume in the tree, if that is the reason; else empty. Not always
    /// UTF-8.
    std::string mountPoint;

    /// The reason in words: the system's message, or "a volume is mounted at " and the mount point.
    [[nodiscard]] std::string reason() const;
};

/// Removes the file, link or folder at the path, a folder with everything in it. Links are removed
/// and never followed, not even one that replaces a folder meanwhile (a race): everything below the
/// top is reached through descriptors.
///
/// A volume that is mounted inside the folder, or over it, is no part of it: nothing on it is
/// touched, and its mount point and the folders above that stay. The same holds for a bind mount,
/// of a single file too, where the system reports one. The folder that contains the path's last
/// component may be on any volume.
///
/// What cannot be removed does not keep the rest from being removed, and what another process
/// removes meanwhile counts as removed. Returns nothing when the path does not exist afterwards;
/// otherwise the first reason, but a mounted volume before any other. EINVAL for a path with a NUL
/// byte. Permissions are not changed. Any depth, with a bounded number of descriptors. Blocks.
[[nodiscard]] std::optional<RemovalFailure> removeTree(const std::string& path);

} // namespace platform
