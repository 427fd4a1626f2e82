#pragma once

#include "frameworks/Frameworks.hpp"

#include <objc/message.h>
#include <objc/runtime.h>

#import <AppKit/AppKit.h>

namespace mac {

/// Puts a function in the place of the class's method and gives the old one, its own or inherited;
/// of a class method, the class is the metaclass. The GNU runtime replaces an inherited method
/// where it comes from, for all classes; so one that the class does not have itself is added.
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

/// The class of that name, which no message has initialised yet.
inline Class classNamed(const char* name) {
    return reinterpret_cast<Class>(objc_getClass(name));
}

inline Class metaclassOf(Class ofClass) {
    return object_getClass(reinterpret_cast<id>(ofClass));
}

/// The height of the capital letters of the system font of that size, in points.
[[nodiscard]] double capHeightOfSystemFont(double size);

/// The object of a property list in that form, autoreleased; nil where it cannot be read.
id propertyListFrom(NSData* data);

/// The same from a file, and to one.
id propertyListInFile(NSString* path);
bool writePropertyList(id list, NSString* path);

} // namespace mac
