#pragma once

#include "platform/objc/ClassBuilder.hpp"

// For tests that run on a toolkit which lacks what a Mac's classes have.

namespace platform::objc::testing {

/// Gives the instances of a class a method, in the place of one that they may have: a plain
/// function whose first argument is the object.
template <auto Function>
void addMethod(const char* className, const char* selector) {
    using Callback = detail::Callback<Function>;
    class_replaceMethod(requireClass(className), sel_registerName(selector),
                        methodPointer<IMP>(&Callback::invoke), Callback::encoding.characters);
}

/// The same for the class itself.
template <auto Function>
void addClassMethod(const char* className, const char* selector) {
    replaceClassMethod<Function>(className, selector);
}

} // namespace platform::objc::testing
