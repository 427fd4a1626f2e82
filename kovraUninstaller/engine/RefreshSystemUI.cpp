#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"

namespace kovra {

Problems UninstallEngine::refreshSystemUI() {
    constexpr const char* killallTool = "/usr/bin/killall";
    runBestEffort(killallTool, {"-9", "TextInputMenuAgent"});
    runBestEffort(killallTool, {"-9", "TextInputSwitcher"});
    runBestEffort(killallTool, {"-9", "pboard"});
    runBestEffort(killallTool, {"SystemUIServer"});
    UninstallerLog::file("  Refresh: input UI services restarted — OK");
    return {};
}

} // namespace kovra
