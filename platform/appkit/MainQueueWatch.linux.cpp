#include "platform/appkit/MainQueueWatch.linux.hpp"

#include "platform/foundation/NSObject.hpp"
#include "platform/foundation/NSString.hpp"
#include "platform/foundation/NSTimer.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/services/Queues.hpp"

#include <cstdint>

extern platform::foundation::NSString* const NSDefaultRunLoopMode;
extern platform::foundation::NSString* const NSEventTrackingRunLoopMode;
extern platform::foundation::NSString* const NSModalPanelRunLoopMode;

namespace platform::appkit {

namespace {

using foundation::NSObject;
using foundation::NSRunLoop;
using foundation::NSString;
using objc::InstanceMethod;

// What the toolkit calls the kind of event that a descriptor has become readable.
constexpr unsigned readable = 0;

// One piece of work for each time round, so that events of the pointer come in between.
void receivedEvent(objc::Object*, void*, unsigned, void*, NSString*) {
    runNextOfMainQueue();
}

NSObject* makeWatcher() {
    const Class made = objc::ClassBuilder("KovraMainQueueWatcher", "NSObject")
                           .method<receivedEvent>("receivedEvent:type:extra:forMode:")
                           .registered();
    return objc::sendMessage<NSObject*>(made, objc::selector<"new">());
}

} // namespace

void serveMainQueueInApplicationLoop() {
    using AddEvent = InstanceMethod<"NSRunLoop", "addEvent:type:watcher:forMode:",
                                    void(void*, unsigned, NSObject*, NSString*)>;
    void* descriptor = reinterpret_cast<void*>(static_cast<std::intptr_t>(mainQueueDescriptor()));
    NSObject* watcher = makeWatcher();
    for (NSString* mode :
         {NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode}) {
        AddEvent::send(NSRunLoop::currentRunLoop(), descriptor, readable, watcher, mode);
    }
}

} // namespace platform::appkit
