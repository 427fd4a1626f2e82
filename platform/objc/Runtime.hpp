#pragma once

#include <objc/objc.h>

#include <cstddef>

namespace platform::objc {

// The runtime's types and names, and the boundary between our code and the frameworks'.

/// The runtime's boolean, which is a bool or an unsigned char. Compare it with NO; pass
/// `toBool(...)`.
using Bool = BOOL;

[[nodiscard]] constexpr Bool toBool(bool value) {
    return static_cast<Bool>(value ? 1 : 0);
}

using Integer = std::ptrdiff_t;
using UInteger = std::size_t;

/// The base of all facades. A facade has no state: a pointer to it is a pointer to the object.
class Object {
  public:
    Object() = delete;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
};

/// The class of that name. Aborts with a message on standard error when no loaded library has it:
/// the installation is broken.
[[nodiscard]] Class requireClass(const char* name);

/// The name of the class of any object; of null it is "nil".
[[nodiscard]] const char* classNameOf(const Object* object);

/// The name of a selector. Borrowed; it lives as long as the process.
[[nodiscard]] const char* nameOf(SEL selector);

using FailureHandler = void (*)() noexcept;

/// Sets what `failAtBoundary` calls. Once, at start.
void setFailureHandler(FailureHandler handler);

/// Inside a catch clause of a function that a framework calls: calls the handler and aborts. The
/// frameworks would swallow the exception, or end the program without a trace.
[[noreturn]] void failAtBoundary() noexcept;

} // namespace platform::objc
