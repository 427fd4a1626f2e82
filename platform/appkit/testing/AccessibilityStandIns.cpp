#include "platform/appkit/testing/AccessibilityStandIns.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSWindow.hpp"

namespace platform::appkit::testing {

namespace {

template <objc::FixedString Name, class Value>
void note(NSObject* element, Value* value) {
    recorded.values[{element, Name.characters}] = value;
}

template <objc::FixedString Name>
void noteTruth(NSObject* element, Bool value) {
    recorded.values[{element, Name.characters}] = foundation::NSNumber::numberWithBool(value != NO);
}

void noteChildren(NSView*, NSArray* children) {
    recorded.children.clear();
    for (UInteger i = 0; i < children->count(); ++i) {
        recorded.children.push_back(objc::retain(children->objectAtIndex(i)));
    }
}

bool addMethods() {
    using objc::testing::addMethod;
    constexpr const char* element = "NSAccessibilityElement";
    addMethod<note<"role", NSString>>(element, "setAccessibilityRole:");
    addMethod<note<"label", NSString>>(element, "setAccessibilityLabel:");
    addMethod<note<"title", NSString>>(element, "setAccessibilityTitle:");
    addMethod<note<"value", NSObject>>(element, "setAccessibilityValue:");
    addMethod<note<"least", NSObject>>(element, "setAccessibilityMinValue:");
    addMethod<note<"most", NSObject>>(element, "setAccessibilityMaxValue:");
    addMethod<noteTruth<"enabled">>(element, "setAccessibilityEnabled:");
    addMethod<noteChildren>("NSView", "setAccessibilityChildren:");
    return true;
}

} // namespace

void recordAccessibility() {
    static const bool added = addMethods();
    static_cast<void>(added);
    recorded = {};
}

NSObject* valueOf(const NSObject* element, const char* name) {
    const auto found = recorded.values.find({element, name});
    return found == recorded.values.end() ? nullptr : found->second;
}

std::string textOf(const NSObject* element, const char* name) {
    return foundation::toString(static_cast<NSString*>(valueOf(element, name)));
}

double numberOf(const NSObject* element, const char* name) {
    return static_cast<foundation::NSNumber*>(valueOf(element, name))->doubleValue();
}

std::vector<std::string> announcements() {
    std::vector<std::string> texts;
    for (const auto& each : recorded.announced) {
        auto* details = static_cast<NSDictionary*>(each.get());
        auto* text = static_cast<NSString*>(details->objectForKey(NSAccessibilityAnnouncementKey));
        texts.push_back(foundation::toString(text));
    }
    return texts;
}

bool press(NSObject* element) {
    return InstanceMethod<"NSAccessibilityElement", "accessibilityPerformPress", Bool()>::send(
               element) != NO;
}

NSObject* unignoredAncestorOf(const NSView* view) {
    return view->window();
}

} // namespace platform::appkit::testing

void NSAccessibilityPostNotification(platform::system::Object element,
                                     platform::system::String notification) {
    platform::appkit::testing::recorded.notifications.emplace_back(element, notification);
}

void NSAccessibilityPostNotificationWithUserInfo(platform::system::Object element,
                                                 platform::system::String notification,
                                                 platform::system::Dictionary userInfo) {
    using namespace platform;
    appkit::testing::recorded.notifications.emplace_back(element, notification);
    appkit::testing::recorded.announced.push_back(objc::retain<foundation::NSObject>(userInfo));
}

platform::system::Object NSAccessibilityUnignoredAncestor(platform::system::Object element) {
    using namespace platform;
    return appkit::testing::unignoredAncestorOf(static_cast<const appkit::NSView*>(element));
}
