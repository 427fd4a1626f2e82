#include "platform/appkit/ApplicationStart.hpp"

#include "platform/appkit/MainQueueWatch.linux.hpp"
#include "platform/appkit/TerminationSignals.linux.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/ReplaceMethod.hpp"

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

} // namespace

NSApplication* startApplication() {
    keepNotificationsLocal();
    registerDefaults();
    NSApplication* application = nullptr;
    try {
        application = NSApplication::sharedApplication();
    } catch (...) {
        return nullptr;
    }
    serveMainQueueInApplicationLoop();
    terminateOnSignals(application);
    return application;
}

} // namespace platform::appkit
