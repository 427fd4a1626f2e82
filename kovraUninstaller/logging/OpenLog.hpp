#pragma once

#include "kovraUninstaller/logging/LogFile.hpp"

namespace kovra {

/// The log file of this process. Opened by the first line and closed by the process's end; never
/// destroyed, since workers and crash handlers may write until then. Any thread.
[[nodiscard]] LogFile& openLog();

} // namespace kovra
