#pragma once

#include <optional>
#include <string>

namespace platform {

// The program's own bundle.

/// The bundle's folder, without a slash at the end.
[[nodiscard]] std::string mainBundlePath();

/// Nothing when the bundle has none.
[[nodiscard]] std::optional<std::string> mainBundleIdentifier();

/// The value of a key of the bundle's Info.plist when it is a string.
[[nodiscard]] std::optional<std::string> mainBundleString(const std::string& key);

/// The path of a resource, nothing when it is missing; an empty type means that the name is the
/// whole file name.
[[nodiscard]] std::optional<std::string> mainBundleResource(const std::string& name,
                                                            const std::string& type);

} // namespace platform
