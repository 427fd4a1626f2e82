#pragma once

#include "platform/appkit/NSWindow.hpp"
#include "platform/declarative/Animation.hpp"

namespace platform::appkit {

/// To be called when something is to be drawn, and when it has been: the application's loop goes
/// round once more before it sleeps. Main thread.
void wakeEventLoop();

/// What the person has asked the system for at this moment. Main thread.
[[nodiscard]] declarative::MotionPreference motionPreference();

/// How many of the units in which the places of screens and windows are told make a point of a
/// page. Main thread.
[[nodiscard]] double screenUnitsPerPoint(const NSWindow* window);

/// Makes the view the whole content of the window. Main thread.
void fillWindow(NSWindow* window, NSView* view);

/// Asks for the pointer's moves over the view, and for the light look, once the view stands in its
/// window. From then on the view gets mouseMoved: and mouseExited:. Main thread.
void followPointer(NSView* view, NSWindow* window);
void forceLightLook(NSWindow* window);

} // namespace platform::appkit
