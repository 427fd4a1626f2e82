#include "platform/appkit/EventLoop.hpp"

#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSEvent.hpp"
#include "platform/services/Queues.hpp"

namespace platform::appkit {

// GNUstep's loop sleeps on its sockets and looks at little else. What a timer has changed would be
// drawn when the next event comes; and events that arrive while a picture is being sent lie in the
// connection's own queue, so that a click would wait for whatever the pointer does next. Work in
// the main queue wakes the loop, and an event that means nothing has it look everywhere.
void wakeEventLoop() {
    NSApplication::sharedApplication()->postEvent(NSEvent::applicationDefined(), false);
    mainQueue().post([] {});
}

} // namespace platform::appkit
