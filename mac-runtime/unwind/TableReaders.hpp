#pragma once

#include "unwind/DwarfFrames.hpp"

#include <cstdint>
#include <span>

namespace mac {

/// Adds the functions of the compact table (<mach-o/compact_unwind_encoding.h>) as FDEs, without
/// those that it refers to `__eh_frame`.
void addCompactUnwind(const std::uint8_t* table, std::uintptr_t imageBase, DwarfFrames& frames);

/// Adds the entries of `__eh_frame`, with absolute pointers.
void addEhFrame(std::span<const std::uint8_t> table, DwarfFrames& frames);

/// Remembers the program's own personality and returns the one that is called in its place
/// (ObjectExceptions.cpp). There can be only one.
[[nodiscard]] std::uintptr_t wrappedPersonality(std::uintptr_t own);

} // namespace mac
