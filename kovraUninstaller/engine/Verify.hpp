#pragma once

#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/UninstallInventory.hpp"

namespace kovra {

/// A line for each item of a scan after the removal that should be gone, in the scan's order. Any
/// thread.
[[nodiscard]] Problems residuesIn(const UninstallInventory& inventory);

/// The lines joined with commas for the log; "none" when there are none. Any thread.
[[nodiscard]] std::string joinedResidues(const Problems& residues);

} // namespace kovra
