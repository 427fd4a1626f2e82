#pragma once

#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/testing/MountingStandIns.hpp"
#include "platform/objc/testing/AddMethod.hpp"

#include <optional>
#include <string>
#include <vector>

// Stand-ins for methods of a Mac's windows and application that this toolkit lacks, and for the
// screens. Main thread.

namespace kovra::testing {

using platform::appkit::NSRect;
using platform::appkit::NSScreen;
using platform::appkit::NSWindow;
using platform::foundation::NSObject;
namespace objc = platform::objc;

/// What the stand-ins record, and the screens that they return.
struct Desktop {
    std::optional<platform::objc::Integer> titleVisibility{};
    std::optional<bool> restorable{};
    int centred = 0;     ///< calls of `center`
    std::string calls{}; ///< other calls to the window and the application, in order
    NSScreen* mainScreen = nullptr;
    NSScreen* windowsScreen = nullptr;
};

inline Desktop desktop;

constexpr const char* visibleFrameVariable = "visibleFrame";

inline NSRect visibleFrameOf(NSObject* screen) {
    return *static_cast<const NSRect*>(objc::pointerVariable(screen, visibleFrameVariable));
}

/// A screen with that visible frame. Never released.
inline NSScreen* makeScreen(const NSRect& visibleFrame) {
    static const Class made = objc::ClassBuilder("KovraTestScreen", "NSScreen")
                                  .pointerVariable(visibleFrameVariable)
                                  .method<visibleFrameOf>("visibleFrame")
                                  .registered();
    auto* screen = objc::sendMessage<NSScreen*>(made, objc::selector<"alloc">());
    objc::setPointerVariable(screen, visibleFrameVariable, new NSRect(visibleFrame));
    static auto& kept = *new std::vector<NSScreen*>;
    kept.push_back(screen);
    return screen;
}

inline void noteTitleVisibility(NSWindow*, platform::objc::Integer visibility) {
    desktop.titleVisibility = visibility;
}

inline void noteRestorable(NSWindow*, objc::Bool restorable) {
    desktop.restorable = restorable != NO;
}

inline void noteCentring(NSWindow*) {
    ++desktop.centred;
}

inline NSScreen* mainScreen(NSObject*) {
    return desktop.mainScreen;
}

inline NSScreen* screenOf(NSWindow*) {
    return desktop.windowsScreen;
}

// The window is not shown: showing one makes this toolkit activate the application.
inline void noteFront(NSWindow*, NSObject*) {
    desktop.calls += "window in front, ";
}

inline void noteRelaunch(NSObject*) {
    desktop.calls += "not at login, ";
}

inline void noteActivation(NSObject*, objc::Bool ignoringOthers) {
    desktop.calls += ignoringOthers != NO ? "active before others, " : "active, ";
}

inline void noteEnd(NSObject*, NSObject*) {
    desktop.calls += "end, ";
}

/// Adds the methods and clears what was recorded. Afterwards there is one screen, with all windows
/// on it.
inline void addWindowStandIns() {
    using objc::testing::addClassMethod;
    using objc::testing::addMethod;
    addMethod<noteTitleVisibility>("NSWindow", "setTitleVisibility:");
    addMethod<noteRestorable>("NSWindow", "setRestorable:");
    addMethod<noteCentring>("NSWindow", "center");
    addMethod<noteFront>("NSWindow", "makeKeyAndOrderFront:");
    addMethod<screenOf>("NSWindow", "screen");
    addClassMethod<mainScreen>("NSScreen", "mainScreen");
    addMethod<noteRelaunch>("NSApplication", "disableRelaunchOnLogin");
    addMethod<noteActivation>("NSApplication", "activateIgnoringOtherApps:");
    addMethod<noteEnd>("NSApplication", "terminate:");
    platform::appkit::testing::addMountingStandIns();
    static NSScreen* const screen = makeScreen({{0, 20}, {1200, 760}});
    desktop = {.mainScreen = screen, .windowsScreen = screen};
}

} // namespace kovra::testing
