#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace platform {

/// Tells one folder from every other while it exists.
struct FolderIdentity {
    dev_t device = 0;
    ino_t number = 0;
    /// The mount through which the folder was reached; empty where the system does not tell. A
    /// device can be mounted at several places, and a part of it over another part.
    std::string mount;

    /// Whether nothing is mounted between the two, if one lies somewhere above the other.
    [[nodiscard]] bool isOnVolumeOf(const FolderIdentity& other) const {
        return device == other.device && mount == other.mount;
    }

    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

/// Of an open folder; nothing, with the reason in errno, when the system does not say. Any thread.
[[nodiscard]] std::optional<FolderIdentity> identityOf(int folder);

/// The same of the folder at a path, to which links are followed. Neither it nor what is in it has
/// to be readable. Any thread.
[[nodiscard]] std::optional<FolderIdentity> identityOf(const std::string& path);

/// Whether a volume, or a single file of one, is mounted over what stands at the name in a folder
/// that has this identity. A link is not followed; what cannot be asked counts as no. Any thread.
[[nodiscard]] bool isMountPoint(int at, const char* name, const FolderIdentity& folder);

} // namespace platform
