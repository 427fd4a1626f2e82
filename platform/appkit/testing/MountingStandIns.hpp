#pragma once

#include "platform/appkit/NSTrackingArea.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/objc/testing/AddMethod.hpp"

// Stand-ins for the methods that the Mac's toolkit calls (Toolkit.macos.cpp) and GNUstep lacks.

namespace platform::appkit::testing {

/// What the page has set, and the system's setting.
struct System {
    objc::Retained<NSTrackingArea> area{};
    objc::Retained<NSObject> appearance{};
    bool reducesMotion = false;
};

inline System mac;

inline void noteTrackingArea(NSView*, NSTrackingArea* area) {
    mac.area = objc::retain(area);
}

inline void noteAppearance(NSWindow*, NSAppearance* appearance) {
    mac.appearance = objc::retain<NSObject>(appearance);
}

inline Bool shouldReduceMotion(NSObject*) {
    return objc::toBool(mac.reducesMotion);
}

inline void addMountingStandIns() {
    using objc::testing::addMethod;
    addMethod<noteTrackingArea>("NSView", "addTrackingArea:");
    addMethod<noteAppearance>("NSWindow", "setAppearance:");
    addMethod<shouldReduceMotion>("NSWorkspace", "accessibilityDisplayShouldReduceMotion");
}

} // namespace platform::appkit::testing
