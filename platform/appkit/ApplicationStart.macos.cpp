#include "platform/appkit/ApplicationStart.hpp"

namespace platform::appkit {

// Started outside its bundle the program would otherwise have no menu bar and no keyboard focus.
NSApplication* startApplication() {
    NSApplication* application = NSApplication::sharedApplication();
    application->setActivationPolicy(NSApplication::activationPolicyRegular);
    return application;
}

} // namespace platform::appkit
