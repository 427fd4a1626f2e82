#pragma once

#include <objc/objc.h>

#include <cstddef>

namespace platform::objc {

// What all of our code that meets Objective-C shares: the runtime's types, its classes by name, and
// what happens to an exception of ours that would enter the frameworks.

/// The runtime's truth value, which is a bool here and an unsigned char there. Compare with NO;
/// give `toBool(...)`.
using Bool = BOOL;

[[nodiscard]] constexpr Bool toBool(bool value) {
    return static_cast<Bool>(value ? 1 : 0);
}

using Integer = std::ptrdiff_t;
using UInteger = std::size_t;

/// What every facade derives from. A facade holds no state: a pointer to it is the object.
class Object {
  public:
    Object() = delete;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
};

/// The class of that name. A name that no loaded library knows is a broken installation: the
/// program says so on standard error and aborts.
[[nodiscard]] Class requireClass(const char* name);

/// The name of the class of any object; of null it is "nil".
[[nodiscard]] const char* classNameOf(const Object* object);

/// The name of a selector. Borrowed; it lives as long as the process.
[[nodiscard]] const char* nameOf(SEL selector);

using FailureHandler = void (*)() noexcept;

/// What is to hear of an exception that is about to leave our code for the frameworks'. It is
/// called inside the catch clause, on the thread that threw. Set once at start.
void setFailureHandler(FailureHandler handler);

/// Called inside a catch clause at the edge of our code: the frameworks either swallow what
/// crosses it or end the program without a trace, so the handler hears of it here and the
/// program aborts.
[[noreturn]] void failAtBoundary() noexcept;

} // namespace platform::objc
