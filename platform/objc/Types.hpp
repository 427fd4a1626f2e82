#pragma once

#include <objc/objc.h>

#include <cstddef>

namespace platform::objc {

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

} // namespace platform::objc
