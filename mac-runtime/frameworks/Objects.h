#pragma once

#include "frameworks/Frameworks.hpp"

#include <objc/message.h>
#include <objc/runtime.h>

#import <AppKit/AppKit.h>

namespace mac {

/// Replaces the class's method by a function and returns the old one, its own or inherited; for a
/// class method, the class is the metaclass. An inherited method is overridden, not replaced: the
/// GNU runtime would replace it in the superclass, for all its subclasses.
template <class Function>
Function* replaceMethod(Class inClass, const char* selector, Function* function) {
    SEL name = sel_registerName(selector);
    Method old = class_getInstanceMethod(inClass, name);
    IMP before = method_getImplementation(old);
    const char* types = method_getTypeEncoding(old);
    if (!class_addMethod(inClass, name, reinterpret_cast<IMP>(function), types)) {
        class_replaceMethod(inClass, name, reinterpret_cast<IMP>(function), types);
    }
    return reinterpret_cast<Function*>(before);
}

/// The class of that name, without initialising it by a message.
inline Class classNamed(const char* name) {
    return reinterpret_cast<Class>(objc_getClass(name));
}

inline Class metaclassOf(Class ofClass) {
    return object_getClass(reinterpret_cast<id>(ofClass));
}

/// The height of the capital letters of the system font of that size, in points.
[[nodiscard]] double capHeightOfSystemFont(double size);

/// Parses a property list in that format; the object is autoreleased, nil if it cannot be read.
id propertyListFrom(NSData* data);

/// Reads one from a file, and writes one.
id propertyListInFile(NSString* path);
bool writePropertyList(id list, NSString* path);

} // namespace mac
