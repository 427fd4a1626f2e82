#pragma once

#include "platform/objc/ClassBuilder.hpp"

namespace platform::objc {

namespace detail {

void replaceClassMethod(const char* className, const char* selector, IMP implementation,
                        const char* encoding);

} // namespace detail

/// Puts a plain function, whose first argument is the class, in the place of a class method. Main
/// thread, before anything calls the method.
template <auto Function>
void replaceClassMethod(const char* className, const char* selector) {
    using Callback = detail::Callback<Function>;
    detail::replaceClassMethod(className, selector, methodPointer<IMP>(&Callback::invoke),
                               Callback::encoding.characters);
}

} // namespace platform::objc
