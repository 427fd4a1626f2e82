#pragma once

#include "platform/appkit/NSTrackingArea.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/objc/testing/AddMethod.hpp"

// Stand-ins for what a page asks of a Mac's views and windows when it is put into one, and of the
// user's wish about motion, which this toolkit lacks.

namespace platform::appkit::testing {

/// What was told to the system, and what it says.
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
