#include "kovraUninstaller/engine/Residues.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"

namespace kovra {

platform::Task<Problems> UninstallEngine::verify() {
    const UninstallInventory inventory = co_await InventoryScanner::scan();
    Problems residues = residuesIn(inventory);
    UninstallerLog::file("  Verify: residues — " + joinedResidues(residues));
    co_return residues;
}

} // namespace kovra
