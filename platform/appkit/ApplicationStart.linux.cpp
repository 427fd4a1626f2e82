#include "platform/appkit/ApplicationStart.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/base/SpawnPrimitives.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/foundation/NSTimer.hpp"
#include "platform/objc/ClassBuilder.hpp"
#include "platform/objc/ReplaceMethod.hpp"
#include "platform/services/MainQueue.hpp"
#include "platform/services/MainQueueSource.linux.hpp"

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

// Asked for once, before the methods are replaced: the distributed centre inherits one of them.
NSObject* localCentre(objc::Object*) {
    static NSObject* only =
        ClassMethod<"NSNotificationCenter", "defaultCenter", NSObject*()>::send();
    return only;
}

NSObject* localCentreForType(objc::Object*, NSString*) {
    return localCentre(nullptr);
}

// The distributed centre starts a daemon that outlives the program, for messages between programs
// that this one neither sends nor awaits.
void keepNotificationsLocal() {
    localCentre(nullptr);
    objc::replaceClassMethod<localCentre>("NSDistributedNotificationCenter", "defaultCenter");
    objc::replaceClassMethod<localCentreForType>("NSDistributedNotificationCenter",
                                                 "notificationCenterForType:");
}

// A plain window among the desktop's others, without the toolkit's own icon and menu window, and
// the fonts of the page. They are defaults alone: what a person has set stays in force.
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

// For each picture that it looks for by name, GNUstep tries the ending of every kind of file that
// it can read, which are hundreds, in every folder where one may lie. Bitmaps are all that are
// needed.
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

// The marks of a menu's items, each of which costs a search of its own: the menu is there for its
// keys, and nobody sees it.
void leaveOutMenuMarks() {
    for (const char* mark : {"GSMenuSelected", "GSMenuMixed", "GSMenuArrow"}) {
        // The name keeps it.
        const auto blank = objc::adopt(
            objc::sendMessage<NSImage*>(objc::classNamed<"NSImage">(), objc::selector<"new">()));
        InstanceMethod<"NSImage", "setName:", Bool(NSString*)>::send(blank.get(), toNSString(mark));
    }
}

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

int requests = -1;

// A signal handler may do little more than write into a pipe.
void request(int) {
    const int before = errno;
    [[maybe_unused]] const auto written = ::write(requests, "", 1);
    errno = before;
}

// Asked before its own loop runs, the application would do nothing and forget; and to put a window
// on the screen GNUstep already runs a loop, which serves the main queue.
void terminateWhenRunning(NSApplication* application) {
    if (InstanceMethod<"NSApplication", "isRunning", Bool()>::send(application) != NO) {
        application->terminate(nullptr);
    } else {
        mainQueue().post([application] { terminateWhenRunning(application); });
    }
}

// GNUstep terminates the application inside of its signal handler, wherever the main thread happens
// to be; in the middle of a message to the display it would wait for itself for ever.
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
