#include "kovraUninstaller/app/HeadlessInventory.hpp"
#include "kovraUninstaller/app/KovraUninstallerApp.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/ProcessStart.hpp"

#include <cstring>
#include <span>

namespace {

bool asksForInventory(std::span<char*> arguments) {
    for (const char* argument : arguments.subspan(arguments.empty() ? 0 : 1)) {
        if (std::strcmp(argument, "--inventory") == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

int main(int argc, char** argv) {
    platform::beginProgram(argv);
    const platform::objc::AutoreleasePool pool;
    if (asksForInventory({argv, static_cast<std::size_t>(argc)})) {
        kovra::printInventoryAndExit();
    }
    return kovra::KovraUninstallerApp::run();
}
