// <objc/runtime.h> and <objc/message.h>: messages, classes and selectors, on the GNU runtime.

#include "frameworks/Objects.h"
#include "loader/Symbols.hpp"

extern "C" void mac_objc_msgSend();

// Finds a message's implementation (Trampolines.S). An unknown selector raises an exception.
extern "C" IMP mac_message_target(id receiver, SEL selector) {
    return objc_msg_lookup(receiver, selector);
}

namespace mac {

void retainObject(void* object) {
    [static_cast<id>(object) retain];
}

void releaseObject(void* object) {
    [static_cast<id>(object) release];
}

void* classOfObject(void* object) {
    return object_getClass(static_cast<id>(object));
}

namespace {

namespace darwin {

SEL selRegisterName(const char* name) {
    return sel_registerName(name);
}

// Initialises the class before it is used. The GNU runtime does so with a lock of its own held, and
// GNUstep's +initialize methods take others: when a message on a second thread initialises a class,
// the two threads can deadlock.
Class objcGetClass(const char* name) {
    Class found = reinterpret_cast<Class>(objc_getClass(name));
    [found class];
    return found;
}

Protocol* objcGetProtocol(const char* name) {
    return objc_getProtocol(name);
}

Class objectGetClass(id object) {
    return object == nil ? Nil : object_getClass(object);
}

} // namespace darwin

} // namespace

Symbols messageSymbols() {
    static const Symbol symbols[] = {
        {"_objc_msgSend", address(mac_objc_msgSend)},
        {"_sel_registerName", address(darwin::selRegisterName)},
        {"_objc_getClass", address(darwin::objcGetClass)},
        {"_objc_getProtocol", address(darwin::objcGetProtocol)},
        {"_object_getClass", address(darwin::objectGetClass)},
    };
    return symbols;
}

} // namespace mac
