// NSAccessibility (<AppKit/NSAccessibilityProtocols.h>, <AppKit/NSAccessibilityConstants.h>):
// elements keep what the program says of them, and views their children.

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

#include <map>
#include <string>

namespace mac {

namespace {

// What the program has set, of each element by the property's name. An element's is dropped with
// it.
std::map<const void*, std::map<std::string, id>>& attributes() {
    static auto& only = *new std::map<const void*, std::map<std::string, id>>;
    return only;
}

void setAttribute(id element, const char* name, id value) {
    id& kept = attributes()[element][name];
    [value retain];
    [kept release];
    kept = value;
}

void dropAttributes(id element) {
    for (auto& [name, value] : attributes()[element]) {
        [value release];
    }
    attributes().erase(element);
}

using Dealloc = void(id, SEL);
Dealloc* toolkitsDealloc = nullptr;

void deallocElement(id self, SEL selector) {
    dropAttributes(self);
    toolkitsDealloc(self, selector);
}

template <class Value>
void keep(id self, SEL selector, Value value) {
    // setAccessibilityLabel: is the property "Label".
    std::string name = std::string(sel_getName(selector)).substr(sizeof "setAccessibility" - 1);
    name.pop_back();
    if constexpr (std::is_same_v<Value, id>) {
        // An element does not own what it is in.
        setAttribute(self, name.c_str(),
                     name == "Parent" ? [NSValue valueWithNonretainedObject:value] : value);
    } else {
        setAttribute(self, name.c_str(), [NSNumber numberWithBool:value]);
    }
}

namespace darwin {

void postNotification(id, NSString*) {}

void postNotificationWithUserInfo(id, NSString*, NSDictionary*) {}

// The first of an element and those around it that is not ignored: here, a window.
id unignoredAncestor(id element) {
    return [element isKindOfClass:[NSView class]] ? static_cast<id>([element window]) : element;
}

} // namespace darwin

} // namespace

void useOwnAccessibility() {
    Class element = classNamed("NSAccessibilityElement");
    for (const char* property :
         {"Role", "Label", "Title", "Value", "MinValue", "MaxValue", "Parent"}) {
        const std::string selector = std::string("setAccessibility") + property + ':';
        class_addMethod(element, sel_registerName(selector.c_str()),
                        reinterpret_cast<IMP>(&keep<id>), "v@:@");
    }
    for (const char* property : {"Enabled", "Focused"}) {
        const std::string selector = std::string("setAccessibility") + property + ':';
        class_addMethod(element, sel_registerName(selector.c_str()),
                        reinterpret_cast<IMP>(&keep<bool>), "v@:B");
    }
    class_addMethod(classNamed("NSView"), sel_registerName("setAccessibilityChildren:"),
                    reinterpret_cast<IMP>(&keep<id>), "v@:@");
    toolkitsDealloc = replaceMethod(element, "dealloc", deallocElement);
}

// Each name is that of a constant, whose text these have on a Mac.
Symbols accessibilitySymbols() {
    static NSString* const announcement = @"AXAnnouncementKey";
    static NSString* const announcementRequested = @"AXAnnouncementRequested";
    static NSString* const button = @"AXButton";
    static NSString* const focusChanged = @"AXFocusedUIElementChanged";
    static NSString* const image = @"AXImage";
    static NSString* const layoutChanged = @"AXLayoutChanged";
    static NSString* const priority = @"AXPriorityKey";
    static NSString* const progressIndicator = @"AXProgressIndicator";
    static NSString* const staticText = @"AXStaticText";
    static NSString* const destroyed = @"AXUIElementDestroyed";
    static NSString* const valueChanged = @"AXValueChanged";
    static const Symbol symbols[] = {
        {"_NSAccessibilityAnnouncementKey", &announcement},
        {"_NSAccessibilityAnnouncementRequestedNotification", &announcementRequested},
        {"_NSAccessibilityButtonRole", &button},
        {"_NSAccessibilityFocusedUIElementChangedNotification", &focusChanged},
        {"_NSAccessibilityImageRole", &image},
        {"_NSAccessibilityLayoutChangedNotification", &layoutChanged},
        {"_NSAccessibilityPriorityKey", &priority},
        {"_NSAccessibilityProgressIndicatorRole", &progressIndicator},
        {"_NSAccessibilityStaticTextRole", &staticText},
        {"_NSAccessibilityUIElementDestroyedNotification", &destroyed},
        {"_NSAccessibilityValueChangedNotification", &valueChanged},
        {"_NSAccessibilityPostNotification", address(darwin::postNotification)},
        {"_NSAccessibilityPostNotificationWithUserInfo",
         address(darwin::postNotificationWithUserInfo)},
        {"_NSAccessibilityUnignoredAncestor", address(darwin::unignoredAncestor)},
    };
    return symbols;
}

} // namespace mac
