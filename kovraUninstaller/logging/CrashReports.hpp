#pragma once

#include "platform/services/SystemFacts.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace kovra {

/// Whether a file of that name is a crash report of this program. Case-insensitive, by the rules of
/// the user's locale. Any thread.
[[nodiscard]] bool isNameOfOurCrashReport(std::string_view fileName);

/// Whether a report is listed by a scan at `now`: it was created less than 24 hours before. Any
/// thread.
[[nodiscard]] bool isRecentCrashReport(platform::FileTime created, platform::FileTime now);

} // namespace kovra
