#include "kovraUninstaller/engine/BestEffort.hpp"
#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"

namespace kovra {

Problems UninstallEngine::refreshSystemUI() {
    constexpr const char* killallTool = "/usr/bin/killall";
    runIgnoringFailure(killallTool, {"-9", "TextInputMenuAgent"});
    runIgnoringFailure(killallTool, {"-9", "TextInputSwitcher"});
    runIgnoringFailure(killallTool, {"-9", "pboard"});
    runIgnoringFailure(killallTool, {"SystemUIServer"});
    UninstallerLog::file("  Refresh: input UI services restarted — OK");
    return {};
}

} // namespace kovra
