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

// The method that the frameworks call: in an autorelease pool of its own, which no exception
// leaves.
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

/// Makes a class at run time out of plain functions. The first argument of each is the object; the
/// type encoding follows from the signature. An object that one returns must have another owner:
/// the call's pool is drained before the caller gets it. Main thread, before the class is used.
class ClassBuilder {
  public:
    ClassBuilder(const char* name, const char* superclass);

    template <auto Function>
    ClassBuilder& method(const char* selector) {
        using Callback = detail::Callback<Function>;
        addMethod(selector, methodPointer<IMP>(&Callback::invoke), Callback::encoding.characters);
        return *this;
    }

    /// A pointer in each object, null at first. What it points to is not freed with the object.
    ClassBuilder& pointerVariable(const char* name);

    ClassBuilder& protocol(const char* name);

    Class registered();

  private:
    void addMethod(const char* selector, IMP implementation, const char* encoding);

    Class built_;
};

/// The pointer variable of that name in an object of a built class.
[[nodiscard]] void* pointerVariable(const void* object, const char* name);
void setPointerVariable(void* object, const char* name, void* value);

/// Replaces a class method by a plain function, whose first argument is the class. Main thread,
/// before anything calls the method.
template <auto Function>
void replaceClassMethod(const char* className, const char* selector) {
    using Callback = detail::Callback<Function>;
    // Class methods are those of the metaclass.
    class_replaceMethod(object_getClass(reinterpret_cast<id>(requireClass(className))),
                        sel_registerName(selector), methodPointer<IMP>(&Callback::invoke),
                        Callback::encoding.characters);
}

} // namespace platform::objc
