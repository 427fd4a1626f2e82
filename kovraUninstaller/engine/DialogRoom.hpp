#pragma once

#include "platform/base/Task.hpp"

namespace kovra {

/// Whoever can move the program's window out of the way of the system's password dialog. The
/// application's delegate registers itself; without one nothing moves.
class DialogRoom {
  public:
    DialogRoom() = default;
    virtual ~DialogRoom() = default;
    DialogRoom(const DialogRoom&) = delete;
    DialogRoom& operator=(const DialogRoom&) = delete;

    /// Slides the window aside; ends, on the main thread, when it stands still. Main thread.
    virtual platform::Task<void> makeRoomForSystemDialog() = 0;

    /// Begins to slide the window back to the middle. Main thread.
    virtual void recenterWindow() = 0;

    /// Makes `room` the one to ask from now on; null for none. Main thread.
    static void use(DialogRoom* room);

    /// Visits the main thread, has the window slid aside, and goes on in the background.
    static platform::Task<void> make();

    /// When its life ends, however that comes, the window is on its way back; nobody waits for it.
    /// Any thread.
    class GivenBack {
      public:
        GivenBack() = default;
        ~GivenBack();
        GivenBack(const GivenBack&) = delete;
        GivenBack& operator=(const GivenBack&) = delete;
    };
};

} // namespace kovra
