#pragma once

#include <optional>
#include <string>

namespace platform {

// The system's input sources. Main thread only: elsewhere the system's calls trap.

/// How many installed sources, disabled ones included, belong to the bundle with that identifier;
/// 0 also when the system gives no answer.
[[nodiscard]] int inputSourceCount(const std::string& bundleIdentifier);

/// The identifier of the active keyboard input source: empty when it has none, nothing when no
/// source is active.
[[nodiscard]] std::optional<std::string> currentInputSourceIdentifier();

/// Makes the first installed source with that identifier the active one. False when there is no
/// such source; whether the system then obeyed is not known.
bool selectInputSource(const std::string& identifier);

/// Disables every installed source whose identifier, in lower case, contains the word. Gives how
/// many the system was asked to disable.
int disableInputSourcesContaining(const std::string& lowercaseWord);

} // namespace platform
