#pragma once

#include <span>

namespace mac {

/// One flag, by both systems' numbers.
struct NumberPair {
    int darwin, ofLinux;
};

/// Darwin's flags as Linux has them. One that is not among the known ends the process, naming the
/// function that was asked.
[[nodiscard]] int linuxFlags(int flags, std::span<const NumberPair> known, const char* function);

/// The folder and the flags of calls such as openat.
[[nodiscard]] int linuxFolder(int folder);
[[nodiscard]] int linuxAtFlags(int flags, const char* function);

/// The flags of open, and back.
[[nodiscard]] int linuxOpenFlags(int flags);
[[nodiscard]] int darwinOpenFlags(int flags);

} // namespace mac
