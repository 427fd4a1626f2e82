#pragma once

namespace mac {

/// The program's environment is a copy of its own, so that what it takes out or sets changes
/// nothing for the toolkit and the emulator, which go by the process's. Who starts the program may
/// hand it over as the values of MAC_RUNTIME_ENTRY_0, MAC_RUNTIME_ENTRY_1 and so on, one for each
/// entry, malformed and doubled ones too, which the emulator would drop, with their number in
/// MAC_RUNTIME_ENTRIES. First of all, once.
void takeProgramEnvironment();

/// What the program's `environ` holds at this moment.
[[nodiscard]] char** programEnvironment();

/// The program by which others of a Mac's are started; null where none is known.
[[nodiscard]] const char* programStarter();

/// The value of the program's variable; null where it has none.
[[nodiscard]] const char* programVariable(const char* name);

} // namespace mac
