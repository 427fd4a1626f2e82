#pragma once

#include <optional>
#include <string>

namespace platform {

// The system's input sources. Main thread only: the system's functions trap on any other.

/// The number of installed sources, disabled ones included, of the bundle with that identifier; 0
/// also when the system returns none.
[[nodiscard]] int inputSourceCount(const std::string& bundleIdentifier);

/// The identifier of the active keyboard input source: empty when the source has none, nothing when
/// no source is active.
[[nodiscard]] std::optional<std::string> currentInputSourceIdentifier();

/// Activates the first installed source with that identifier. False when there is no such source;
/// whether the system activated it is not known.
bool selectInputSource(const std::string& identifier);

/// Disables every installed source whose identifier, in lower case, contains the word. Returns how
/// many the system was asked to disable.
int disableInputSourcesContaining(const std::string& lowercaseWord);

} // namespace platform
