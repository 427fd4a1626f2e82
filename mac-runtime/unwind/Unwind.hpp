#pragma once

#include <cstdint>
#include <span>

namespace mac {

/// The program's unwind tables: `__unwind_info` in Apple's compact form, and `__eh_frame` in
/// DWARF's for the few functions that the compact form cannot describe.
struct UnwindTables {
    std::uintptr_t imageBase = 0;
    const std::uint8_t* compact = nullptr;
    std::span<const std::uint8_t> frames;
};

/// Registers them with this system's unwinder, merged, since it searches one table for an address.
/// Once, before the program runs.
void registerUnwindTables(const UnwindTables& tables);

} // namespace mac
