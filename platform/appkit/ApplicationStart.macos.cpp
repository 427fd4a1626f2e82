#include "platform/appkit/ApplicationStart.hpp"

#include "platform/foundation/Conversions.hpp"

namespace platform::appkit {

namespace {

using foundation::toNSString;

// A word on the command line is no document: the program has none, and an alert would say so.
void openNoArguments() {
    auto* defaults = NSMutableDictionary::dictionaryWithCapacity(1);
    defaults->setObject(toNSString("NO"), toNSString("NSTreatUnknownArgumentsAsOpen"));
    auto* own = ClassMethod<"NSUserDefaults", "standardUserDefaults", NSObject*()>::send();
    InstanceMethod<"NSUserDefaults", "registerDefaults:", void(NSDictionary*)>::send(own, defaults);
}

} // namespace

// Started outside its bundle the program would otherwise have no menu bar and no keyboard focus.
NSApplication* startApplication() {
    openNoArguments();
    NSApplication* application = NSApplication::sharedApplication();
    application->setActivationPolicy(NSApplication::activationPolicyRegular);
    return application;
}

} // namespace platform::appkit
