#pragma once

#include <cstdint>
#include <span>

namespace mac {

/// How the program's frames are unwound, as its linker left it: `__unwind_info`, in Apple's compact
/// form, and `__eh_frame`, in DWARF's, for the few functions that the compact form cannot describe.
struct UnwindTables {
    std::uintptr_t imageBase = 0;
    const std::uint8_t* compact = nullptr;
    std::span<const std::uint8_t> frames;
};

/// Tells this system's unwinder of them. It looks into one table for an address, so both go into
/// one. Before the program runs, once.
void registerUnwindTables(const UnwindTables& tables);

} // namespace mac
