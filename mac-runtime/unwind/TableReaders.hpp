#pragma once

#include "unwind/DwarfFrames.hpp"

#include <cstdint>
#include <span>

namespace mac {

/// Adds the compact table's functions, in <mach-o/compact_unwind_encoding.h>'s form, as DWARF
/// descriptions; those that it leaves to `__eh_frame` not.
void addCompactUnwind(const std::uint8_t* table, std::uintptr_t imageBase, DwarfFrames& frames);

/// Adds the entries of `__eh_frame`, with whole pointers.
void addEhFrame(std::span<const std::uint8_t> table, DwarfFrames& frames);

/// The personality that is called for the program's frames in the place of its own
/// (ObjectExceptions.cpp), which it remembers. There can be one only.
[[nodiscard]] std::uintptr_t wrappedPersonality(std::uintptr_t own);

} // namespace mac
