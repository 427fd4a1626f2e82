#pragma once

#include "platform/objc/ClassBuilder.hpp"

// For tests on GNUstep, whose classes lack methods that a Mac's have.

namespace platform::objc::testing {

/// Adds an instance method to a class, or replaces it: a plain function whose first argument is the
/// object.
template <auto Function>
void addMethod(const char* className, const char* selector) {
    using Callback = detail::Callback<Function>;
    class_replaceMethod(requireClass(className), sel_registerName(selector),
                        methodPointer<IMP>(&Callback::invoke), Callback::encoding.characters);
}

/// The same for a class method.
template <auto Function>
void addClassMethod(const char* className, const char* selector) {
    replaceClassMethod<Function>(className, selector);
}

} // namespace platform::objc::testing
