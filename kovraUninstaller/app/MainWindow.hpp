#pragma once

#include "platform/appkit/NSWindow.hpp"
#include "platform/objc/Retained.hpp"

namespace kovra {

/// The program's window, empty and not yet on screen, in the middle of the main screen. Main
/// thread.
[[nodiscard]] platform::objc::Retained<platform::appkit::NSWindow> makeMainWindow();

} // namespace kovra
