#pragma once

#include "platform/appkit/NSApplication.hpp"

namespace platform::appkit {

/// Makes the application object and connects it to the display. Null when there is no display to
/// connect to. Once, on the main thread, before any other use of AppKit.
[[nodiscard]] NSApplication* startApplication();

} // namespace platform::appkit
