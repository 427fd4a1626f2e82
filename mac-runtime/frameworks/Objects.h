#pragma once

#import <AppKit/AppKit.h>

#include "frameworks/Frameworks.hpp"

#include <objc/message.h>
#include <objc/runtime.h>

namespace mac {

/// Puts a function in the place of the class's method and gives the old one; of a class method, the
/// class is the metaclass.
template <class Function>
Function* replaceMethod(Class inClass, const char* selector, Function* function) {
    SEL name = sel_registerName(selector);
    Method own = class_getInstanceMethod(inClass, name);
    IMP old = own == nullptr ? nullptr : method_getImplementation(own);
    class_replaceMethod(inClass, name, reinterpret_cast<IMP>(function),
                        own == nullptr ? "@@:" : method_getTypeEncoding(own));
    return reinterpret_cast<Function*>(old);
}

/// The class of that name, which no message has initialised yet.
inline Class classNamed(const char* name) {
    return reinterpret_cast<Class>(objc_getClass(name));
}

inline Class metaclassOf(Class ofClass) {
    return object_getClass(reinterpret_cast<id>(ofClass));
}

/// The object of a property list in that form, autoreleased; nil where it cannot be read.
id propertyListFrom(NSData* data);

/// The same from a file, and to one.
id propertyListInFile(NSString* path);
bool writePropertyList(id list, NSString* path);

} // namespace mac
