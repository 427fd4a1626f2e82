#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A path that holds a NUL byte leads to nothing, and nothing is made for it.

/// Whether something is there. Links are followed, so a dangling one counts as nothing, and so
/// does what lies behind a folder that may not be searched. Any thread.
[[nodiscard]] bool fileExists(const std::string& path);

/// The names in a folder, without "." and "..", in the order in which the system lists them;
/// nothing when the folder cannot be listed. Any thread.
[[nodiscard]] std::optional<std::vector<std::string>> namesInFolder(const std::string& folder);

/// A whole regular file, or nothing when it cannot be read or holds more bytes than that. Any
/// thread.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                  std::size_t mostBytes = SIZE_MAX);

/// Creates the folder and those above it that are missing, with default modes. False when it is
/// not there afterwards. Any thread.
bool createFolders(const std::string& path);

/// What follows the last slash of a path.
[[nodiscard]] std::string_view lastPathComponent(std::string_view path);

} // namespace platform
