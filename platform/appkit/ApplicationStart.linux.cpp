#include "platform/appkit/ApplicationStart.hpp"

#include "platform/appkit/MainQueueWatch.linux.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/appkit/TerminationSignals.linux.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/ClassBuilder.hpp"

namespace platform::appkit {

namespace {

using foundation::NSNumber;
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
