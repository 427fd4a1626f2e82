#pragma once

#include "platform/appkit/NSEvent.hpp"
#include "platform/appkit/NSMenu.hpp"

namespace platform::appkit {

class NSApplication : public NSObject {
  public:
    static constexpr Integer activationPolicyRegular = 0;

    // clang-format off
    static NSApplication* sharedApplication() { return ClassMethod<"NSApplication", "sharedApplication", NSApplication*()>::send(); }

    void setDelegate(NSObject* delegate) { InstanceMethod<"NSApplication", "setDelegate:", void(NSObject*)>::send(this, delegate); }
    void setMainMenu(NSMenu* menu) { InstanceMethod<"NSApplication", "setMainMenu:", void(NSMenu*)>::send(this, menu); }
    void setActivationPolicy(Integer policy) { InstanceMethod<"NSApplication", "setActivationPolicy:", Bool(Integer)>::send(this, policy); }
    void disableRelaunchOnLogin() { InstanceMethod<"NSApplication", "disableRelaunchOnLogin", void()>::send(this); }
    void activateIgnoringOtherApps(bool flag) { InstanceMethod<"NSApplication", "activateIgnoringOtherApps:", void(Bool)>::send(this, objc::toBool(flag)); }
    void postEvent(NSEvent* event, bool atStart) { InstanceMethod<"NSApplication", "postEvent:atStart:", void(NSEvent*, Bool)>::send(this, event, objc::toBool(atStart)); }
    void run() { InstanceMethod<"NSApplication", "run", void()>::send(this); }
    void terminate(NSObject* sender) { InstanceMethod<"NSApplication", "terminate:", void(NSObject*)>::send(this, sender); }

    // clang-format on
};

} // namespace platform::appkit
