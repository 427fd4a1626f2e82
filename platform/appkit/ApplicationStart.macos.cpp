#include "platform/appkit/ApplicationStart.hpp"

#include "platform/foundation/Conversions.hpp"

namespace platform::appkit {

namespace {

using foundation::toNSString;

// Otherwise AppKit would take an argument for a document to open, and show an alert: the program
// has no document types.
void openNoArguments() {
    auto* defaults = NSMutableDictionary::dictionaryWithCapacity(1);
    defaults->setObject(toNSString("NO"), toNSString("NSTreatUnknownArgumentsAsOpen"));
    auto* own = ClassMethod<"NSUserDefaults", "standardUserDefaults", NSObject*()>::send();
    InstanceMethod<"NSUserDefaults", "registerDefaults:", void(NSDictionary*)>::send(own, defaults);
}

} // namespace

// A program that is started outside a bundle has no menu bar and no keyboard focus by default.
NSApplication* startApplication() {
    openNoArguments();
    NSApplication* application = NSApplication::sharedApplication();
    application->setActivationPolicy(NSApplication::activationPolicyRegular);
    return application;
}

} // namespace platform::appkit
