#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace platform {

/// Identifies a folder for as long as it exists.
struct FolderIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    /// The mount by which the folder was reached; empty when unknown. A device can be mounted at
    /// several places, and a part of it over another part.
    std::string mount;

    /// Whether both are on one mount; if one is above the other, nothing is mounted between them.
    [[nodiscard]] bool isOnVolumeOf(const FolderIdentity& other) const {
        return device == other.device && mount == other.mount;
    }

    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

/// Of an open folder; nothing, with the reason in errno, when the system call fails.
[[nodiscard]] std::optional<FolderIdentity> identityOf(int folder);

/// The same of the folder at a path; links are followed. The folder need not be readable.
[[nodiscard]] std::optional<FolderIdentity> identityOf(const std::string& path);

/// Whether the entry of that name in a folder with this identity is a mount point, of a volume or
/// of a single file. A link is not followed. False when the system call fails.
[[nodiscard]] bool isMountPoint(int at, const char* name, const FolderIdentity& folder);

} // namespace platform
