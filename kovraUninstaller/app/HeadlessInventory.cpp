#include "kovraUninstaller/app/HeadlessInventory.hpp"

#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "platform/base/Task.hpp"
#include "platform/services/Queues.hpp"

#include <cstdio>
#include <cstdlib>

namespace kovra {

namespace {

platform::Task<void> scanAndPrint() {
    const UninstallInventory inventory = co_await InventoryScanner::scan();
    const std::string text = inventory.summaryText() + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    std::exit(EXIT_SUCCESS);
}

} // namespace

void printInventoryAndExit() {
    platform::start(scanAndPrint());
    platform::runMainLoop();
}

} // namespace kovra
