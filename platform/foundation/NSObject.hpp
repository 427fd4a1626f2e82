#pragma once

#include "platform/objc/Method.hpp"
#include "platform/objc/Retained.hpp"
#include "platform/objc/Runtime.hpp"

// Facades of the Foundation classes in use, with the methods in use. A pointer to a facade is a
// pointer to the object; what a method returns is autoreleased unless its name begins with alloc,
// new or copy. On any thread that has an autorelease pool.

namespace platform::foundation {

using objc::Bool;
using objc::ClassMethod;
using objc::InstanceMethod;
using objc::Integer;
using objc::UInteger;

class NSObject : public objc::Object {
  public:
    // clang-format off
    [[nodiscard]] bool isKindOfClass(Class kind) const { return InstanceMethod<"NSObject", "isKindOfClass:", Bool(Class)>::send(this, kind) != NO; }
    [[nodiscard]] bool respondsToSelector(SEL selector) const { return InstanceMethod<"NSObject", "respondsToSelector:", Bool(SEL)>::send(this, selector) != NO; }

    // clang-format on
};

/// The object as a T when it is one, else null.
template <class T>
[[nodiscard]] T* kindOf(NSObject* object, Class kind) {
    return object != nullptr && object->isKindOfClass(kind) ? static_cast<T*>(object) : nullptr;
}

} // namespace platform::foundation
