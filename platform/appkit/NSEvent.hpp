#pragma once

#include "platform/appkit/AppKitObject.hpp"
#include "platform/appkit/NSGeometry.hpp"

namespace platform::appkit {

class NSEvent : public NSObject {
  public:
    static constexpr UInteger applicationDefinedType = 15;
    static constexpr UInteger shiftKey = 1U << 17;
    static constexpr UInteger controlKey = 1U << 18;
    static constexpr UInteger optionKey = 1U << 19;
    static constexpr UInteger commandKey = 1U << 20;

    // clang-format off
    /// An application-defined event, which no view handles.
    static NSEvent* applicationDefined() { return ClassMethod<"NSEvent", "otherEventWithType:location:modifierFlags:timestamp:windowNumber:context:subtype:data1:data2:", NSEvent*(UInteger, NSPoint, UInteger, double, Integer, NSObject*, short, Integer, Integer)>::send(applicationDefinedType, {}, 0, 0, 0, nullptr, 0, 0, 0); }

    [[nodiscard]] NSPoint locationInWindow() const { return InstanceMethod<"NSEvent", "locationInWindow", NSPoint()>::send(this); }
    [[nodiscard]] UInteger modifierFlags() const { return InstanceMethod<"NSEvent", "modifierFlags", UInteger()>::send(this); }
    [[nodiscard]] NSString* charactersIgnoringModifiers() const { return InstanceMethod<"NSEvent", "charactersIgnoringModifiers", NSString*()>::send(this); }
    [[nodiscard]] bool isARepeat() const { return InstanceMethod<"NSEvent", "isARepeat", Bool()>::send(this) != NO; }

    // clang-format on
};

} // namespace platform::appkit
