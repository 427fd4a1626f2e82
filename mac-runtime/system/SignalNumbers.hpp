#pragma once

#include <csignal>
#include <cstdint>

namespace mac {

/// Darwin's sigset_t: a bit for each signal from 1 on.
using DarwinSignals = std::uint32_t;

/// A signal by the other system's number; 0 where it has none.
[[nodiscard]] int linuxSignal(int darwin);
[[nodiscard]] int darwinSignal(int ofLinux);

/// A set of signals as Linux has it; what only a Mac has is left out, since it never comes.
[[nodiscard]] sigset_t linuxSignals(DarwinSignals darwin);

} // namespace mac
