#pragma once

#include <csignal>
#include <cstdint>

namespace mac {

/// Darwin's sigset_t: one bit for each signal, from 1 on.
using DarwinSignals = std::uint32_t;

/// A signal by the other system's number; 0 if it has none.
[[nodiscard]] int linuxSignal(int darwin);
[[nodiscard]] int darwinSignal(int ofLinux);

/// The set as Linux has it, without the signals that exist on a Mac alone: they never arrive.
[[nodiscard]] sigset_t linuxSignals(DarwinSignals darwin);

} // namespace mac
