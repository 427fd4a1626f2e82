#pragma once

#include "platform/appkit/NSWindow.hpp"
#include "platform/declarative/Animation.hpp"

namespace platform::appkit {

// What AppKit and GNUstep do differently about windows and settings. Main thread.

/// Wakes the application's run loop. To be called after something was marked for drawing, which
/// GNUstep would draw at the next event only, and after it was drawn, when events may wait unread.
void wakeEventLoop();

/// The system's "reduce motion" setting at this moment.
[[nodiscard]] declarative::MotionPreference motionPreference();

/// The scale factor of window and screen coordinates: how many of their units are one point.
[[nodiscard]] double screenUnitsPerPoint(const NSWindow* window);

/// Makes the view the content view of the window, without a gap at its borders.
void fillWindow(NSWindow* window, NSView* view);

/// Has the view sent mouseEntered:, mouseMoved: and mouseExited:. The view must be in the window.
void followPointer(NSView* view, NSWindow* window);

/// Gives the window the light appearance, whichever one the system is set to.
void forceLightLook(NSWindow* window);

} // namespace platform::appkit
