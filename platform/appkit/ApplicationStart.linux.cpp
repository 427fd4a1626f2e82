#include "platform/appkit/ApplicationStart.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/base/SpawnPrimitives.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/foundation/NSTimer.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/services/Queues.hpp"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <thread>
#include <unistd.h>
#include <utility>

namespace platform::appkit {

namespace {

using foundation::NSNumber;
using foundation::NSRunLoop;
using foundation::toNSString;

// The first call must come before the methods are replaced: the distributed centre inherits one of
// them.
NSObject* localCentre(objc::Object*) {
    static NSObject* only =
        ClassMethod<"NSNotificationCenter", "defaultCenter", NSObject*()>::send();
    return only;
}

NSObject* localCentreForType(objc::Object*, NSString*) {
    return localCentre(nullptr);
}

// The distributed notification centre would start a daemon, which outlives the program. This
// program uses no distributed notifications.
void keepNotificationsLocal() {
    localCentre(nullptr);
    objc::replaceClassMethod<localCentre>("NSDistributedNotificationCenter", "defaultCenter");
    objc::replaceClassMethod<localCentreForType>("NSDistributedNotificationCenter",
                                                 "notificationCenterForType:");
}

// No application icon and no menu window on the desktop, and the page's fonts. Registered defaults
// have the lowest precedence: the user's own settings override them.
void registerDefaults() {
    auto* defaults = NSMutableDictionary::dictionaryWithCapacity(6);
    const auto set = [defaults](const char* key, NSObject* value) {
        defaults->setObject(value, toNSString(key));
    };
    set("GSSuppressAppIcon", NSNumber::numberWithBool(true));
    set("GSAppOwnsMiniwindow", NSNumber::numberWithBool(true));
    set("GSFontHinting", NSNumber::numberWithLongLong(17));
    set("NSMenuInterfaceStyle", toNSString("NSWindows95InterfaceStyle"));
    set("NSFont", toNSString("Inter-Regular"));
    set("NSBoldFont", toNSString("Inter-SemiBold"));
    auto* own = ClassMethod<"NSUserDefaults", "standardUserDefaults", NSObject*()>::send();
    InstanceMethod<"NSUserDefaults", "registerDefaults:", void(NSDictionary*)>::send(own, defaults);
}

// For each image that it looks up by name, GNUstep tries the file name extensions of all registered
// image formats, which are hundreds, in every folder of images. Only bitmaps are used.
void readBitmapsOnly() {
    NSArray* kinds = ClassMethod<"NSImageRep", "registeredImageRepClasses", NSArray*()>::send();
    const Class bitmaps = objc::classNamed<"NSBitmapImageRep">();
    for (UInteger left = kinds->count(); left > 0; --left) {
        auto* const kind = reinterpret_cast<Class>(kinds->objectAtIndex(left - 1));
        if (kind != bitmaps) {
            ClassMethod<"NSImageRep", "unregisterImageRepClass:", void(Class)>::send(kind);
        }
    }
}

// Looking up the images of a menu item's state takes time, and the menu, which is there for its key
// equivalents, is never visible: empty images are registered by their names.
void leaveOutMenuMarks() {
    for (const char* mark : {"GSMenuSelected", "GSMenuMixed", "GSMenuArrow"}) {
        // setName: retains the image.
        const auto blank = objc::adopt(
            objc::sendMessage<NSImage*>(objc::classNamed<"NSImage">(), objc::selector<"new">()));
        InstanceMethod<"NSImage", "setName:", Bool(NSString*)>::send(blank.get(), toNSString(mark));
    }
}

// GNUstep's ET_RDESC: a file descriptor is readable.
constexpr unsigned readable = 0;

// One piece of work in each iteration of the run loop, so that mouse events are handled in between.
void receivedEvent(objc::Object*, void*, unsigned, void*, NSString*) {
    runNextOfMainQueue();
}

NSObject* makeWatcher() {
    const Class made = objc::ClassBuilder("KovraMainQueueWatcher", "NSObject")
                           .method<receivedEvent>("receivedEvent:type:extra:forMode:")
                           .registered();
    return objc::sendMessage<NSObject*>(made, objc::selector<"new">());
}

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

// The write end of the pipe that terminateOnSignals reads.
int requests = -1;

// Async-signal-safe: it only writes to the pipe.
void request(int) {
    const int before = errno;
    [[maybe_unused]] const auto written = ::write(requests, "", 1);
    errno = before;
}

// terminate: does nothing before the application's run loop runs. The main queue may be served
// earlier: GNUstep runs a loop of its own when it opens a window.
void terminateWhenRunning(NSApplication* application) {
    if (InstanceMethod<"NSApplication", "isRunning", Bool()>::send(application) != NO) {
        application->terminate(nullptr);
    } else {
        mainQueue().post([application] { terminateWhenRunning(application); });
    }
}

// The application terminates normally on the first SIGTERM or SIGINT, and the process ends at once
// on the second. GNUstep's own signal handler calls terminate:, which deadlocks when the main
// thread is interrupted while it holds the lock of the display's connection.
void terminateOnSignals(NSApplication* application) {
    Pipe pipe = makePipe();
    requests = pipe.writeEnd.release();
    std::thread([application, arrivals = std::move(pipe.readEnd)] {
        char arrived = 0;
        if (retryInterrupted([&] { return ::read(arrivals.get(), &arrived, 1); }) == 1) {
            mainQueue().post([application] { terminateWhenRunning(application); });
        }
    }).detach();

    struct sigaction action{};

    action.sa_handler = request;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGTERM, SIGINT}) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

NSApplication* startApplication() {
    keepNotificationsLocal();
    readBitmapsOnly();
    registerDefaults();
    NSApplication* application = nullptr;
    try {
        application = NSApplication::sharedApplication();
    } catch (...) {
        return nullptr;
    }
    serveMainQueueInApplicationLoop();
    leaveOutMenuMarks();
    terminateOnSignals(application);
    return application;
}

} // namespace platform::appkit
