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

/// Ends the preferences daemon, which launchd starts again, so that it drops its cached settings.
/// Blocks.
void restartPreferencesDaemon();

/// Removes the file or the folder tree at the path. When not all of it can be removed, reports the
/// path, with the first reason. Does nothing for a missing path and a dangling symbolic link.
/// Blocks.
void removeIfExists(const std::string& path, StepReport& report);

/// The same for each path, in order.
void removeExisting(const std::vector<std::string>& paths, StepReport& report);

} // namespace kovra
