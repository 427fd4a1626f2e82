#pragma once

#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/Encoding.hpp"
#include "platform/objc/Method.hpp"
#include "platform/objc/Runtime.hpp"

#include <objc/runtime.h>

namespace platform::objc {

namespace detail {

template <auto Function>
struct Callback;

// What the frameworks call: a pool of its own, and nothing thrown leaves it.
template <class Self, class Result, class... Arguments, Result (*Function)(Self*, Arguments...)>
struct Callback<Function> {
    static constexpr auto encoding = MethodEncoding<Result(Arguments...)>::value;

    static Result invoke(id self, SEL, Arguments... arguments) {
        const AutoreleasePool pool;
        try {
            return Function(reinterpret_cast<Self*>(self), arguments...);
        } catch (...) {
            failAtBoundary();
        }
    }
};

} // namespace detail

/// Makes a class at run time out of plain functions. The first argument of each is the object;
/// the type encoding follows from the signature. An object that one gives back must be somebody's
/// already: the call's own pool is emptied before the caller has it. Main thread, before the class
/// is used.
class ClassBuilder {
  public:
    ClassBuilder(const char* name, const char* superclass);

    template <auto Function>
    ClassBuilder& method(const char* selector) {
        using Callback = detail::Callback<Function>;
        addMethod(selector, methodPointer<IMP>(&Callback::invoke), Callback::encoding.characters);
        return *this;
    }

    /// Room for one pointer in each object, zero at first. Not freed with the object.
    ClassBuilder& pointerVariable(const char* name);

    ClassBuilder& protocol(const char* name);

    Class registered();

  private:
    void addMethod(const char* selector, IMP implementation, const char* encoding);

    Class built;
};

/// The pointer variable of that name in an object of a built class.
[[nodiscard]] void* pointerVariable(const void* object, const char* name);
void setPointerVariable(void* object, const char* name, void* value);

/// Puts a plain function, whose first argument is the class, in the place of a class method. Main
/// thread, before anything calls the method.
template <auto Function>
void replaceClassMethod(const char* className, const char* selector) {
    using Callback = detail::Callback<Function>;
    // The methods of a class are those of its class's class.
    class_replaceMethod(object_getClass(reinterpret_cast<id>(requireClass(className))),
                        sel_registerName(selector), methodPointer<IMP>(&Callback::invoke),
                        Callback::encoding.characters);
}

} // namespace platform::objc
