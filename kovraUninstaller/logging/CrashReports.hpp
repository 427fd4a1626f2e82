#pragma once

#include "platform/services/SystemFacts.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace kovra {

/// Whether a file of that name is a crash report of this program. Letter case does not matter, by
/// the rules of the person's own language. Any thread.
[[nodiscard]] bool isNameOfOurCrashReport(std::string_view fileName);

/// Whether a report created then is worth a line at the time of the scan: it is less than a day
/// old, to the nanosecond. Any thread.
[[nodiscard]] bool isRecentCrashReport(platform::FileTime created, platform::FileTime now);

} // namespace kovra
