#pragma once

#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/UninstallInventory.hpp"

namespace kovra {

/// A line for each thing that a scan after the removal still finds and that should be gone, in
/// the scan's order. Any thread.
[[nodiscard]] Problems residuesIn(const UninstallInventory& inventory);

/// The lines as the log shows them: in one, with commas, or "none". Any thread.
[[nodiscard]] std::string joinedResidues(const Problems& residues);

} // namespace kovra
