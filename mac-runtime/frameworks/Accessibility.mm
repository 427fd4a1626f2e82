// NSAccessibility (<AppKit/NSAccessibilityProtocols.h>, <AppKit/NSAccessibilityConstants.h>):
// elements keep the attributes that the program sets, and views their children. An accessibility
// client in another process (<HIServices/AXUIElement.h>) knows an element by a number, which is
// valid for the element's lifetime; isAccessibilitySelectorAllowed: decides what it may set or do.

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

#include <deque>
#include <map>
#include <string>

@interface NSObject (MacAccessibility)
- (bool)isAccessibilityElement;
- (NSRect)accessibilityFrame;
- (id)accessibilityParent;
- (id)accessibilityWindow;
- (id)accessibilityTopLevelUIElement;
- (bool)isAccessibilityFocused;
- (void)setAccessibilityFocused:(bool)focused;
- (bool)isAccessibilitySelectorAllowed:(SEL)selector;
- (bool)accessibilityPerformPress;
- (id)accessibilityHitTest:(NSPoint)point;
- (id)accessibilityFocusedUIElement;
- (bool)applicationSupportsSecureRestorableState:(NSApplication*)application;
@end

namespace mac {

namespace {

// The attributes that the program has set, by element and property name. They are dropped when the
// element is deallocated.
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

id attribute(id element, const char* name) {
    const auto& all = attributes()[element];
    const auto found = all.find(name);
    return found == all.end() ? nil : found->second;
}

// The numbers by which clients know elements and windows.
std::map<const void*, long>& numbers() {
    static auto& only = *new std::map<const void*, long>;
    return only;
}

id numberOf(id element) {
    static long last = 0;
    if (element == nil) {
        return [NSNull null];
    }
    long& number = numbers()[element];
    if (number == 0) {
        number = ++last;
    }
    return [NSNumber numberWithLong:number];
}

// Nil if the element no longer exists.
id elementOf(NSString* number) {
    for (const auto& [element, known] : numbers()) {
        if (known == [number integerValue]) {
            return static_cast<id>(const_cast<void*>(element));
        }
    }
    return nil;
}

void dropElement(id element) {
    for (auto& [name, value] : attributes()[element]) {
        [value release];
    }
    attributes().erase(element);
    numbers().erase(element);
}

using Dealloc = void(id, SEL);
Dealloc* toolkitsDealloc = nullptr;

void deallocElement(id self, SEL selector) {
    dropElement(self);
    toolkitsDealloc(self, selector);
}

template <class Value>
void keep(id self, SEL selector, Value value) {
    // setAccessibilityLabel: is the property "Label".
    std::string name = std::string(sel_getName(selector)).substr(sizeof "setAccessibility" - 1);
    name.pop_back();
    if constexpr (std::is_same_v<Value, id>) {
        // An element does not retain its parent.
        setAttribute(self, name.c_str(),
                     name == "Parent" ? [NSValue valueWithNonretainedObject:value] : value);
    } else {
        setAttribute(self, name.c_str(), [NSNumber numberWithBool:value]);
    }
}

// Notifications posted since a client last asked for them.
std::deque<NSDictionary*>& notifications() {
    static auto& only = *new std::deque<NSDictionary*>;
    return only;
}

namespace darwin {

void postNotificationWithUserInfo(id element, NSString* name, NSDictionary* details) {
    constexpr std::size_t most = 1000;
    if (element == nil || !isFirstThread()) {
        fail("%s was posted for no element, or off the main thread", [name UTF8String]);
    }
    NSDictionary* notification = [NSDictionary
        dictionaryWithObjectsAndKeys:name, @"name", numberOf(element), @"element",
                                     details == nil ? [NSDictionary dictionary] : details,
                                     @"details", nil];
    notifications().push_back([notification retain]);
    if (notifications().size() > most) {
        [notifications().front() release];
        notifications().pop_front();
    }
    if ([name isEqual:@"AXUIElementDestroyed"]) {
        numbers().erase(element);
    }
}

void postNotification(id element, NSString* name) {
    postNotificationWithUserInfo(element, name, nil);
}

// The element itself or its nearest ancestor that is not ignored. Views are ignored unless they say
// otherwise; windows are not.
id unignoredAncestor(id element) {
    while ([element isKindOfClass:[NSView class]] &&
           !([element respondsToSelector:@selector(isAccessibilityElement)] &&
             [element isAccessibilityElement])) {
        id around = [element superview];
        element = around == nil ? static_cast<id>([element window]) : around;
    }
    return element;
}

} // namespace darwin

id orNull(id value) {
    return value == nil ? [NSNull null] : value;
}

NSNumber* truth(bool value) {
    return [NSNumber numberWithBool:value];
}

NSArray* numbersIn(NSRect rect) {
    NSMutableArray* all = [NSMutableArray array];
    for (const double number : {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}) {
        [all addObject:[NSNumber numberWithDouble:number]];
    }
    return all;
}

bool allows(id element, SEL selector) {
    return
        [element respondsToSelector:selector] && [element isAccessibilitySelectorAllowed:selector];
}

NSDictionary* described(id element) {
    NSMutableDictionary* all = [NSMutableDictionary dictionary];
    [all setObject:numberOf(element) forKey:@"number"];
    for (const char* name :
         {"Role", "Label", "Title", "Value", "MinValue", "MaxValue", "Enabled"}) {
        [all setObject:orNull(attribute(element, name))
                forKey:[[NSString stringWithUTF8String:name] lowercaseString]];
    }
    [all setObject:numbersIn([element accessibilityFrame]) forKey:@"frame"];
    [all setObject:numberOf([element accessibilityParent]) forKey:@"parent"];
    [all setObject:numberOf([element accessibilityWindow]) forKey:@"window"];
    [all setObject:numberOf([element accessibilityTopLevelUIElement]) forKey:@"toplevel"];
    [all setObject:truth([element isAccessibilityFocused]) forKey:@"focused"];
    [all setObject:truth(allows(element, @selector(accessibilityPerformPress))) forKey:@"press"];
    [all setObject:truth(allows(element, @selector(setAccessibilityFocused:))) forKey:@"focus"];
    return all;
}

// The children of an ignored view belong to its parent.
NSDictionary* describedWindow(NSWindow* window) {
    NSMutableArray* children = [NSMutableArray array];
    for (id child in static_cast<NSArray*>(attribute([window contentView], "Children"))) {
        [children addObject:described(child)];
    }
    return [NSDictionary dictionaryWithObjectsAndKeys:numberOf(window), @"number", @"AXWindow",
                                                      @"role", numbersIn([window frame]), @"frame",
                                                      children, @"children", nil];
}

NSArray* describedWindows() {
    NSMutableArray* all = [NSMutableArray array];
    for (NSWindow* window in [NSApp windows]) {
        if ([window isVisible] && attribute([window contentView], "Children") != nil) {
            [all addObject:describedWindow(window)];
        }
    }
    return all;
}

NSArray* takenNotifications() {
    NSMutableArray* all = [NSMutableArray array];
    for (NSDictionary* notification : notifications()) {
        [all addObject:[notification autorelease]];
    }
    notifications().clear();
    return all;
}

id focusedElement() {
    id responder = [[NSApp keyWindow] firstResponder];
    return [responder respondsToSelector:@selector(accessibilityFocusedUIElement)]
               ? [responder accessibilityFocusedUIElement]
               : nil;
}

id elementAt(NSPoint point) {
    id view = [[NSApp keyWindow] contentView];
    return [view respondsToSelector:@selector(accessibilityHitTest:)]
               ? [view accessibilityHitTest:point]
               : nil;
}

// Performs the action and returns "done", or the error: kAXErrorInvalidUIElement,
// kAXErrorActionUnsupported, kAXErrorAttributeUnsupported.
id done(id element, SEL selector, void (*act)(id)) {
    if (element == nil) {
        return @"invalid element";
    }
    if (!allows(element, selector)) {
        return @"unsupported";
    }
    act(element);
    return @"done";
}

// What AppKit asks the application at launch and termination.
NSDictionary* describedApplication() {
    NSWindow* window = [NSApp keyWindow];
    NSMutableDictionary* all = [NSMutableDictionary dictionary];
    [all setObject:NSStringFromClass([[NSApp delegate] class]) forKey:@"delegate"];
    [all setObject:truth([[NSApp delegate] applicationSupportsSecureRestorableState:NSApp])
            forKey:@"supportssecurerestorablestate"];
    [all setObject:orNull([[NSUserDefaults standardUserDefaults]
                       objectForKey:@"NSTreatUnknownArgumentsAsOpen"])
            forKey:@"treatunknownargumentsasopen"];
    [all setObject:orNull(NSStringFromClass([[window initialFirstResponder] class]))
            forKey:@"initialfirstresponder"];
    [all setObject:orNull(NSStringFromClass([[window firstResponder] class]))
            forKey:@"firstresponder"];
    return all;
}

IMP beforeTheFault = nullptr;

id raise(id self, SEL selector) {
    if (isFromProgram(__builtin_return_address(0))) {
        [NSException raise:@"ToolkitException" format:@"in %@", NSStringFromSelector(selector)];
    }
    return beforeTheFault(self, selector);
}

id answerTo(NSArray* words) {
    NSString* verb = [words objectAtIndex:0];
    id element = [words count] == 2 ? elementOf([words objectAtIndex:1]) : nil;
    if ([verb isEqual:@"windows"]) {
        return describedWindows();
    }
    if ([verb isEqual:@"notifications"]) {
        return takenNotifications();
    }
    if ([verb isEqual:@"focused"]) {
        return numberOf(focusedElement());
    }
    if ([verb isEqual:@"at"] && [words count] == 3) {
        return numberOf(elementAt(NSMakePoint([[words objectAtIndex:1] doubleValue],
                                              [[words objectAtIndex:2] doubleValue])));
    }
    if ([verb isEqual:@"press"]) {
        return done(element, @selector(accessibilityPerformPress),
                    [](id button) { [button accessibilityPerformPress]; });
    }
    if ([verb isEqual:@"focus"]) {
        return done(element, @selector(setAccessibilityFocused:),
                    [](id button) { [button setAccessibilityFocused:true]; });
    }
    if ([verb isEqual:@"unfocus"]) {
        return done(element, @selector(setAccessibilityFocused:),
                    [](id button) { [button setAccessibilityFocused:false]; });
    }
    if ([verb isEqual:@"application"]) {
        return describedApplication();
    }
    if ([verb isEqual:@"raise"] && [words count] == 3) {
        beforeTheFault =
            reinterpret_cast<IMP>(replaceMethod(classNamed([[words objectAtIndex:1] UTF8String]),
                                                [[words objectAtIndex:2] UTF8String], raise));
        return @"done";
    }
    return @"unknown";
}

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

std::string answerAccessibilityClient(const std::string& request) {
    NSArray* words =
        [[NSString stringWithUTF8String:request.c_str()] componentsSeparatedByString:@" "];
    // GNUstep encodes only arrays and dictionaries as JSON.
    NSData* text = [NSJSONSerialization dataWithJSONObject:[NSArray arrayWithObject:answerTo(words)]
                                                   options:0
                                                     error:nullptr];
    return std::string(static_cast<const char*>([text bytes]), [text length]);
}

// Each text is the value of that constant on a Mac.
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
