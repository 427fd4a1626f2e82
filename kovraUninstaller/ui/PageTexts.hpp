#pragma once

#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"

#include <string>

namespace kovra {

/// The page's headline in that phase. Any thread.
[[nodiscard]] std::string title(const Phase& phase);

/// The page's explanation in that phase, of any length. Any thread.
[[nodiscard]] std::string subtitle(const Phase& phase);

/// What is said aloud when that phase begins. Any thread.
[[nodiscard]] std::string announcementOf(const Phase& phase);

} // namespace kovra
