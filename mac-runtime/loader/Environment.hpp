#pragma once

namespace mac {

/// The program gets an environment of its own, so that its changes do not affect the toolkit and
/// the emulator, which use the process's. The starter may pass it as the values of
/// MAC_RUNTIME_ENTRY_0, MAC_RUNTIME_ENTRY_1 and so on, one for each entry, with their number in
/// MAC_RUNTIME_ENTRIES: malformed and duplicate entries, which the emulator would drop, are
/// preserved so. To be called once, before all else.
void takeProgramEnvironment();

/// The program's `environ` as it is now.
[[nodiscard]] char** programEnvironment();

/// The path of the starter, which starts child processes that are Mac programs; null if unknown.
[[nodiscard]] const char* programStarter();

/// The value of the program's variable; null if it is not set.
[[nodiscard]] const char* programVariable(const char* name);

} // namespace mac
