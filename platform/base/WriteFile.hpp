#pragma once

#include <string>
#include <string_view>

namespace platform {

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

} // namespace platform
