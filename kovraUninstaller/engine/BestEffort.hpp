#pragma once

#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/system/Shell.hpp"

#include <optional>
#include <string>
#include <vector>

namespace kovra {

/// Runs a tool and waits for its end. Returns nothing when it cannot be started. Most callers go on
/// however it ends, and ignore the result. Blocks.
std::optional<Shell::Result> runBestEffort(const std::string& tool,
                                           const std::vector<std::string>& arguments);

/// The same with a receiver of the output.
[[nodiscard]] std::optional<Shell::StreamedResult>
runBestEffort(const std::string& tool, const std::vector<std::string>& arguments,
              const Shell::LinesReceiver& receive);

/// Makes the system's preferences daemon forget what it holds in memory. Blocks.
void restartPreferencesDaemon();

/// Removes what exists at the path, a folder with everything in it; reports it, and the first
/// reason, when something of it stays. Nothing there, or a link that leads nowhere: passed over.
/// Blocks.
void removeIfExists(const std::string& path, StepReport& report);

/// The same for each path, in order.
void removeExisting(const std::vector<std::string>& paths, StepReport& report);

} // namespace kovra
