#pragma once

#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/system/Shell.hpp"

#include <optional>
#include <string>
#include <vector>

namespace kovra {

/// Runs a tool and does not care how it ends, nor whether it could be started. Blocks.
void runIgnoringFailure(const std::string& tool, const std::vector<std::string>& arguments);

/// Runs a tool; nothing when it could not be started. Blocks.
[[nodiscard]] std::optional<Shell::Result> runTool(const std::string& tool,
                                                   const std::vector<std::string>& arguments);

/// Makes the system's preferences daemon forget what it holds in memory. Blocks.
void restartPreferencesDaemon();

/// Removes what exists at the path, a folder with everything in it; reports it, and the first
/// reason, when something of it stays. Nothing there, or a link that leads nowhere: passed over.
/// Blocks.
void removeIfExists(const std::string& path, StepReport& report);

/// The same for each path, in order.
void removeExisting(const std::vector<std::string>& paths, StepReport& report);

} // namespace kovra
