#pragma once

#include "platform/appkit/NSWindow.hpp"

namespace platform::appkit {

/// Makes the view the whole content of the window. Main thread.
void fillWindow(NSWindow* window, NSView* view);

/// Asks for the pointer's moves over the view, and for the light look, once the view stands in its
/// window. From then on the view gets mouseMoved: and mouseExited:. Main thread.
void followPointer(NSView* view, NSWindow* window);
void forceLightLook(NSWindow* window);

} // namespace platform::appkit
