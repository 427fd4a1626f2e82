#pragma once

#include "platform/appkit/AppKitObject.hpp"

namespace platform::appkit {

class NSMenu;

class NSMenuItem : public NSObject {
  public:
    // clang-format off
    static NSMenuItem* alloc() { return ClassMethod<"NSMenuItem", "alloc", NSMenuItem*()>::send(); }
    static NSMenuItem* separatorItem() { return ClassMethod<"NSMenuItem", "separatorItem", NSMenuItem*()>::send(); }

    NSMenuItem* initWithTitle(NSString* title, SEL action, NSString* key) { return InstanceMethod<"NSMenuItem", "initWithTitle:action:keyEquivalent:", NSMenuItem*(NSString*, SEL, NSString*)>::send(this, title, action, key); }
    void setKeyEquivalentModifierMask(UInteger mask) { InstanceMethod<"NSMenuItem", "setKeyEquivalentModifierMask:", void(UInteger)>::send(this, mask); }
    void setSubmenu(NSMenu* menu) { InstanceMethod<"NSMenuItem", "setSubmenu:", void(NSMenu*)>::send(this, menu); }

    // clang-format on
};

class NSMenu : public NSObject {
  public:
    // clang-format off
    static NSMenu* alloc() { return ClassMethod<"NSMenu", "alloc", NSMenu*()>::send(); }

    NSMenu* initWithTitle(NSString* title) { return InstanceMethod<"NSMenu", "initWithTitle:", NSMenu*(NSString*)>::send(this, title); }
    void addItem(NSMenuItem* item) { InstanceMethod<"NSMenu", "addItem:", void(NSMenuItem*)>::send(this, item); }

    // clang-format on
};

} // namespace platform::appkit
