#pragma once

#include "platform/objc/Encoding.hpp"
#include "platform/objc/Runtime.hpp"

#include <objc/message.h>
#include <objc/runtime.h>

// Each facade method is declared once, by one of the two templates below: with its class, its
// selector and its exact types. The declaration sends the message, and on a Mac it also puts a
// line "+ Class selector encoding" (or "-") into a section of the program, so that what the
// program asks of the system can be read from the built file and checked.
#if defined(__APPLE__)
#define PLATFORM_OBJC_METHOD_RECORD gnu::used, gnu::section("__DATA,__kovra_methods")
#else
#define PLATFORM_OBJC_METHOD_RECORD maybe_unused
#endif

namespace platform::objc {

/// Casts a pointer to a method's function. The runtime takes and returns all of them as one type;
/// only this function casts between that and their own types.
template <class To, class From>
To methodPointer(From* from) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wcast-function-type"
    return reinterpret_cast<To>(from);
#pragma GCC diagnostic pop
}

/// Sends a message by the system's calling convention. The result is zero for a null receiver.
template <class Result, class... Arguments>
Result sendMessage(const void* receiver, SEL selector, Arguments... arguments) {
    if (receiver == nullptr) {
        return Result();
    }
    const id object = static_cast<id>(const_cast<void*>(receiver));
    using Implementation = Result (*)(id, SEL, Arguments...);
#if defined(__APPLE__) && defined(__aarch64__)
    const auto implementation = methodPointer<Implementation>(&objc_msgSend);
#elif defined(__GNU_LIBOBJC__)
    const auto implementation = methodPointer<Implementation>(objc_msg_lookup(object, selector));
#else
#error "Sending messages is known for arm64 Macs and for the GNU runtime."
#endif
    return implementation(object, selector, arguments...);
}

template <FixedString Name>
SEL selector() {
    static const SEL registered = sel_registerName(Name.characters);
    return registered;
}

template <FixedString ClassName>
Class classNamed() {
    static const Class found = requireClass(ClassName.characters);
    return found;
}

namespace detail {

template <FixedString Kind, FixedString ClassName, FixedString Selector, class Signature>
struct MethodRecord {
    [[PLATFORM_OBJC_METHOD_RECORD]] static constexpr auto line =
        Kind + FixedString(" ") + ClassName + FixedString(" ") + Selector + FixedString(" ") +
        MethodEncoding<Signature>::value + FixedString("\n");
};

} // namespace detail

template <FixedString ClassName, FixedString Selector, class Signature>
struct ClassMethod;

template <FixedString ClassName, FixedString Selector, class Result, class... Arguments>
struct ClassMethod<ClassName, Selector, Result(Arguments...)> {
    using Record = detail::MethodRecord<"+", ClassName, Selector, Result(Arguments...)>;

    static Result send(Arguments... arguments) {
        static_cast<void>(&Record::line);
        return sendMessage<Result, Arguments...>(classNamed<ClassName>(), selector<Selector>(),
                                                 arguments...);
    }
};

template <FixedString ClassName, FixedString Selector, class Signature>
struct InstanceMethod;

template <FixedString ClassName, FixedString Selector, class Result, class... Arguments>
struct InstanceMethod<ClassName, Selector, Result(Arguments...)> {
    using Record = detail::MethodRecord<"-", ClassName, Selector, Result(Arguments...)>;

    static Result send(const void* receiver, Arguments... arguments) {
        static_cast<void>(&Record::line);
        return sendMessage<Result, Arguments...>(receiver, selector<Selector>(), arguments...);
    }
};

} // namespace platform::objc
