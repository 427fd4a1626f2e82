#pragma once

#include "platform/base/Task.hpp"

namespace kovra {

/// Moves the program's window out of the way of the system's password dialog. The application's
/// delegate implements and installs it; while none is installed, no window moves.
class WindowMover {
  public:
    WindowMover() = default;
    virtual ~WindowMover() = default;
    WindowMover(const WindowMover&) = delete;
    WindowMover& operator=(const WindowMover&) = delete;

    /// Slides the window aside; ends, on the main thread, when it stands still. Main thread.
    virtual platform::Task<void> makeRoomForSystemDialog() = 0;

    /// Begins to slide the window back to the middle. Main thread.
    virtual void recenterWindow() = 0;

    /// Makes this the one that the functions below use; a null pointer removes it. Main thread.
    static void install(WindowMover* mover);
};

/// Hops to the main thread, has the window slid aside, and goes on in the background.
platform::Task<void> moveWindowAside();

/// Has the window slid back when the scope ends, also by an exception. Does not wait for it. Any
/// thread.
class RecenterWindowAtScopeEnd {
  public:
    RecenterWindowAtScopeEnd() = default;
    ~RecenterWindowAtScopeEnd();
    RecenterWindowAtScopeEnd(const RecenterWindowAtScopeEnd&) = delete;
    RecenterWindowAtScopeEnd& operator=(const RecenterWindowAtScopeEnd&) = delete;
};

} // namespace kovra
