#pragma once

#include <span>

namespace mac {

/// A flag with both systems' numbers.
struct NumberPair {
    int darwin, ofLinux;
};

/// Converts Darwin's flags to Linux's. An unknown flag ends the process with a message that names
/// the function.
[[nodiscard]] int linuxFlags(int flags, std::span<const NumberPair> known, const char* function);

/// The folder descriptor (AT_FDCWD) and the flags of calls such as openat.
[[nodiscard]] int linuxFolder(int folder);
[[nodiscard]] int linuxAtFlags(int flags, const char* function);

/// The flags of open, in both directions.
[[nodiscard]] int linuxOpenFlags(int flags);
[[nodiscard]] int darwinOpenFlags(int flags);

} // namespace mac
