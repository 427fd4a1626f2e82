#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace platform {

// Looking at files and folders, reading and writing them. A path that holds a NUL byte leads to
// nothing, and nothing is made for it.

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

/// Writes the whole content, resuming after interruptions and partial writes. False when the
/// system refuses; part of it may stand then. Any thread.
bool writeAll(int descriptor, std::string_view content);

/// Puts a file with this content in place of whatever stands at the path, by way of a temporary
/// file in the same folder and a rename: a reader sees the old content or the new. False, and
/// nothing changed, when the system refuses or the path holds a NUL byte. Any thread.
bool writeFileAtomically(const std::string& path, std::string_view content);

/// The same by way of a given name in the same folder, where whatever stands is removed first: what
/// a writer that was killed left behind goes with the next write. For a file that has one writer at
/// a time.
bool writeFileAtomically(const std::string& path, std::string_view content,
                         const std::string& temporary);

/// Copies the bytes of a regular file into a new file that its owner may write and all may read.
/// Whatever stands at the target already, a link included, is left alone and makes the copy fail.
/// Gives the system's code on failure, no error otherwise: EINVAL for a source that is neither file
/// nor folder, and for a path that holds a NUL byte. A target that was begun is removed.
/// Any thread.
[[nodiscard]] std::error_code copyFile(const std::string& from, const std::string& to);

} // namespace platform
