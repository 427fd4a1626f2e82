#pragma once

#include "platform/appkit/NSMenu.hpp"

namespace kovra {

/// The menu bar of a program with one window. Autoreleased. Main thread.
[[nodiscard]] platform::appkit::NSMenu* makeMainMenu();

} // namespace kovra
