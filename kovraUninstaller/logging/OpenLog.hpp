#pragma once

#include "kovraUninstaller/logging/LogFile.hpp"
#include "platform/services/UnifiedLog.hpp"

namespace kovra {

/// The log file of this process. Opened by the first line and closed by the process's end; never
/// destroyed, since workers and crash handlers may write until then. Any thread.
[[nodiscard]] LogFile& openLog();

/// The system's log under the program's own name. The first call reads that from the main bundle
/// and belongs to the main thread; later ones may come from any. Never destroyed.
[[nodiscard]] const platform::UnifiedLog& unifiedLog();

} // namespace kovra
