#pragma once

namespace kovra {

/// Scans, prints the summary and a line feed to standard output, and ends the process with status
/// 0. Needs no display. Main thread.
[[noreturn]] void printInventoryAndExit();

} // namespace kovra
