#pragma once

#include "platform/appkit/NSWindow.hpp"

namespace platform::appkit {

/// How many of the units in which the places of screens and windows are told make a point of a
/// page. Main thread.
[[nodiscard]] double screenUnitsPerPoint(const NSWindow* window);

} // namespace platform::appkit
