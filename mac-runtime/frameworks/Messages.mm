// <objc/runtime.h> and <objc/message.h>: messages, classes and selectors, on the GNU runtime.

#include "frameworks/Objects.h"
#include "loader/Symbols.hpp"

extern "C" void mac_objc_msgSend();

// Where a message goes (Trampolines.S); an object that does not know it raises.
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

// The class is initialised before anybody has it. The GNU runtime does that with a lock of its own
// held, and GNUstep's classes take others; were it done by a message on a second thread, two
// threads could wait for each other for ever.
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
