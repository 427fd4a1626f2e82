#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace platform {

// Looking at files and folders, reading and writing them. A path with a NUL byte leads to nothing,
// and nothing is created for it.

/// Whether the path exists. Links are followed, so a dangling one does not, nor does anything below
/// a folder without search permission.
[[nodiscard]] bool fileExists(const std::string& path);

/// The names in a folder, without "." and "..", in the order in which the system lists them;
/// nothing when the folder cannot be listed.
[[nodiscard]] std::optional<std::vector<std::string>> namesInFolder(const std::string& folder);

/// The content of a regular file; nothing when it cannot be read or has more than `mostBytes`
/// bytes.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                  std::size_t mostBytes = SIZE_MAX);

/// Creates the folder and those above it that are missing, with default modes. False when it is
/// not there afterwards.
bool createFolders(const std::string& path);

/// What follows the last slash of a path; all of it when there is none.
[[nodiscard]] std::string_view lastPathComponent(std::string_view path);

/// Writes the whole content, resuming after interruptions (EINTR) and partial writes. False when a
/// write fails; a part may be written then.
bool writeAll(int descriptor, std::string_view content);

/// Replaces whatever is at the path by a file with this content, by a temporary file in the same
/// folder and a rename: a reader sees the old content or the new. Returns false and changes nothing
/// when the system refuses or the path has a NUL byte.
bool writeFileAtomically(const std::string& path, std::string_view content);

/// The same with a given temporary path in the same folder, which is removed first: what a killed
/// writer left there goes with the next write. For a file with one writer at a time.
bool writeFileAtomically(const std::string& path, std::string_view content,
                         const std::string& temporary);

/// Copies the bytes of a regular file into a new file that its owner may write and all may read.
/// The copy fails if anything exists at the target, a link included. Returns the system's error
/// code on failure, no error otherwise: EINVAL for a source that is neither file nor folder, and
/// for a path with a NUL byte. An incomplete target is removed.
[[nodiscard]] std::error_code copyFile(const std::string& from, const std::string& to);

} // namespace platform
