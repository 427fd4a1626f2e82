#pragma once

#include "platform/appkit/NSEvent.hpp"
#include "platform/appkit/NSView.hpp"
#include "platform/foundation/Conversions.hpp"

#include <string>

// Sends events to a view as the toolkit would.

namespace platform::appkit::testing {

enum class Held { no, yes };

enum class Mouse { down, up, moved, entered, exited };

/// `held`: whether it is a key repeat.
inline void keyDown(NSView* view, const std::string& characters, UInteger modifiers = 0,
                    Held held = Held::no) {
    constexpr UInteger keyDownType = 10;
    NSString* text = foundation::toNSString(characters);
    NSEvent* event = ClassMethod<
        "NSEvent",
        "keyEventWithType:location:modifierFlags:timestamp:windowNumber:context:characters:"
        "charactersIgnoringModifiers:isARepeat:keyCode:",
        NSEvent*(UInteger, NSPoint, UInteger, double, Integer, NSObject*, NSString*, NSString*,
                 Bool, unsigned short)>::send(keyDownType, {}, modifiers, 0, 0, nullptr, text, text,
                                              objc::toBool(held == Held::yes), 0);
    InstanceMethod<"NSResponder", "keyDown:", void(NSEvent*)>::send(view, event);
}

/// The point is in the window's coordinates, or in the view's own while it is in no window.
inline void mouse(NSView* view, Mouse what, NSPoint point) {
    constexpr UInteger leftDownType = 1;
    NSEvent* event =
        ClassMethod<"NSEvent",
                    "mouseEventWithType:location:modifierFlags:timestamp:windowNumber:context:"
                    "eventNumber:clickCount:pressure:",
                    NSEvent*(UInteger, NSPoint, UInteger, double, Integer, NSObject*, Integer,
                             Integer, float)>::send(leftDownType, point, 0, 0, 0, nullptr, 0, 1, 1);
    switch (what) {
    case Mouse::down:
        return InstanceMethod<"NSResponder", "mouseDown:", void(NSEvent*)>::send(view, event);
    case Mouse::up:
        return InstanceMethod<"NSResponder", "mouseUp:", void(NSEvent*)>::send(view, event);
    case Mouse::moved:
        return InstanceMethod<"NSResponder", "mouseMoved:", void(NSEvent*)>::send(view, event);
    case Mouse::entered:
        return InstanceMethod<"NSResponder", "mouseEntered:", void(NSEvent*)>::send(view, event);
    case Mouse::exited:
        return InstanceMethod<"NSResponder", "mouseExited:", void(NSEvent*)>::send(view, event);
    }
}

} // namespace platform::appkit::testing
