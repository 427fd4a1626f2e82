// The Mac's accessibility bridge on stand-ins for what this toolkit's views and elements lack.

#include "platform/appkit/AccessibilityBridge.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSAccessibilityElement.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/testing/AddMethod.hpp"

#include <gmock/gmock.h>

#include <map>
#include <utility>

namespace platform::appkit {
namespace {

using declarative::AccessibilityNode;
using declarative::AccessibilityRole;
using foundation::toString;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What the bridge has told the system.
struct Told {
    std::map<std::pair<const NSObject*, std::string>, NSObject*> values{};
    std::vector<objc::Retained<NSObject>> children{};
    std::vector<std::pair<const NSObject*, NSString*>> notifications{};
    objc::Retained<NSObject> announced{};
};

Told told;

template <objc::FixedString Name, class Value>
void note(NSObject* element, Value* value) {
    told.values[{element, Name.characters}] = value;
}

void noteFocus(NSObject* element, Bool focused) {
    told.values[{element, "focused"}] = foundation::NSNumber::numberWithBool(focused != NO);
}

void noteChildren(NSView*, NSArray* children) {
    told.children.clear();
    for (UInteger i = 0; i < children->count(); ++i) {
        told.children.push_back(objc::retain(children->objectAtIndex(i)));
    }
}

void addStandIns() {
    static const bool once = [] {
        using objc::testing::addMethod;
        constexpr const char* element = "NSAccessibilityElement";
        addMethod<note<"role", NSString>>(element, "setAccessibilityRole:");
        addMethod<note<"label", NSString>>(element, "setAccessibilityLabel:");
        addMethod<note<"title", NSString>>(element, "setAccessibilityTitle:");
        addMethod<note<"value", NSObject>>(element, "setAccessibilityValue:");
        addMethod<note<"least", NSObject>>(element, "setAccessibilityMinValue:");
        addMethod<note<"most", NSObject>>(element, "setAccessibilityMaxValue:");
        addMethod<note<"parent", NSObject>>(element, "setAccessibilityParent:");
        addMethod<noteFocus>(element, "setAccessibilityFocused:");
        addMethod<noteChildren>("NSView", "setAccessibilityChildren:");
        return true;
    }();
    ASSERT_TRUE(once);
}

NSObject* valueOf(const NSObject* element, const char* name) {
    const auto found = told.values.find({element, name});
    return found == told.values.end() ? nullptr : found->second;
}

std::string textOf(const NSObject* element, const char* name) {
    return toString(static_cast<NSString*>(valueOf(element, name)));
}

double numberOf(const NSObject* element, const char* name) {
    return static_cast<foundation::NSNumber*>(valueOf(element, name))->doubleValue();
}

NSObject* child(std::size_t index) {
    return told.children.at(index).get();
}

bool presses(NSObject* element) {
    return InstanceMethod<"NSAccessibilityElement", "accessibilityPerformPress", Bool()>::send(
               element) != NO;
}

NSRect frameOf(NSObject* element) {
    return InstanceMethod<"NSAccessibilityElement", "accessibilityFrame", NSRect()>::send(element);
}

constexpr declarative::Rect place{10, 20, 30, 40};

AccessibilityNode text(const std::string& label) {
    return {{.role = AccessibilityRole::staticText, .label = label}, place, ""};
}

AccessibilityNode button(const std::string& id) {
    return {{.role = AccessibilityRole::button, .label = "Press " + id}, place, id};
}

AccessibilityNode bar(double value) {
    return {{.role = AccessibilityRole::progressIndicator, .label = "Progress", .value = value},
            place,
            ""};
}

class AccessibilityBridgeTest : public ::testing::Test {
  protected:
    AccessibilityBridgeTest() {
        addStandIns();
        told = {};
        window_->setReleasedWhenClosed(false);
        window_->setContentView(view_.get());
    }

    ~AccessibilityBridgeTest() override { told = {}; }

    objc::AutoreleasePool pool_{};
    objc::Retained<NSWindow> window_ = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{100, 200}, {300, 300}}, 0, NSWindow::backingBuffered, true));
    objc::Retained<NSView> view_ = objc::adopt(
        ClassMethod<"NSView", "alloc", NSView*()>::send()->initWithFrame({{0, 0}, {300, 300}}));
    std::vector<std::string> pressed_{};
    AccessibilityBridge bridge_{view_.get(),
                                [this](const std::string& id) { pressed_.push_back(id); }};
};

TEST_F(AccessibilityBridgeTest, DescribesEachNodeAsItsRoleWantsIt) {
    bridge_.update({text("Hello"),
                    button("go"),
                    bar(0.25),
                    {{.role = AccessibilityRole::image, .label = "Icon"}, place, ""}},
                   std::nullopt);
    ASSERT_EQ(told.children.size(), 4U);
    EXPECT_EQ(valueOf(child(0), "role"), NSAccessibilityStaticTextRole);
    EXPECT_EQ(textOf(child(0), "value"), "Hello");
    EXPECT_EQ(valueOf(child(1), "role"), NSAccessibilityButtonRole);
    EXPECT_EQ(textOf(child(1), "title"), "Press go");
    EXPECT_EQ(valueOf(child(2), "role"), NSAccessibilityProgressIndicatorRole);
    EXPECT_EQ(textOf(child(2), "label"), "Progress");
    EXPECT_EQ(numberOf(child(2), "least"), 0);
    EXPECT_EQ(numberOf(child(2), "value"), 0.25);
    EXPECT_EQ(numberOf(child(2), "most"), 1);
    EXPECT_EQ(valueOf(child(3), "role"), NSAccessibilityImageRole);
    EXPECT_EQ(textOf(child(3), "label"), "Icon");
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(valueOf(child(i), "parent"), view_.get());
    }
}

TEST_F(AccessibilityBridgeTest, TellsOfAChangeOnceAndOfNoneNever) {
    bridge_.update({text("one")}, std::nullopt);
    EXPECT_EQ(told.notifications.size(), 1U);
    EXPECT_EQ(told.notifications[0].first, view_.get());
    EXPECT_EQ(told.notifications[0].second, NSAccessibilityLayoutChangedNotification);
    bridge_.update({text("one")}, std::nullopt);
    EXPECT_EQ(told.notifications.size(), 1U);
    bridge_.update({text("two")}, std::nullopt);
    EXPECT_EQ(told.notifications.size(), 2U);
}

TEST_F(AccessibilityBridgeTest, KeepsTheElementsThatStayWhereverTheyStand) {
    bridge_.update({text("one"), button("go"), bar(0.1)}, std::nullopt);
    const auto before = told.children;
    bridge_.update({button("go"), bar(0.2), text("one")}, std::nullopt);
    EXPECT_EQ(child(0), before[1].get());
    EXPECT_NE(child(1), before[2].get());
    EXPECT_EQ(child(2), before[0].get());
}

TEST_F(AccessibilityBridgeTest, HasAnElementForEachOfTwoNodesThatAreAlike) {
    bridge_.update({text("same"), text("same")}, std::nullopt);
    EXPECT_NE(child(0), child(1));
    const auto before = told.children;
    bridge_.update({text("same"), text("same"), text("more")}, std::nullopt);
    EXPECT_EQ(child(0), before[0].get());
    EXPECT_EQ(child(1), before[1].get());
}

TEST_F(AccessibilityBridgeTest, PressesButtonsAndNothingElse) {
    bridge_.update({text("one"), button("go")}, std::nullopt);
    EXPECT_FALSE(presses(child(0)));
    EXPECT_TRUE(presses(child(1)));
    EXPECT_THAT(pressed_, ElementsAre("go"));
}

TEST_F(AccessibilityBridgeTest, PlacesAnElementOnTheScreenWhereverTheWindowGoes) {
    bridge_.update({button("go")}, std::nullopt);
    for (const NSPoint origin : {NSPoint{100, 200}, NSPoint{150, 120}}) {
        window_->setFrameOrigin(origin);
        const NSPoint corner = window_->frame().origin;
        const NSRect frame = frameOf(child(0));
        EXPECT_EQ(frame.origin.x, corner.x + place.x);
        EXPECT_EQ(frame.origin.y, corner.y + place.y);
        EXPECT_EQ(frame.size.width, place.width);
        EXPECT_EQ(frame.size.height, place.height);
    }
    window_->setContentView(nullptr);
    EXPECT_EQ(frameOf(child(0)).size.width, 0);
}

TEST_F(AccessibilityBridgeTest, TellsWhichButtonGotTheFocus) {
    bridge_.update({button("go"), button("stop")}, "stop");
    EXPECT_EQ(numberOf(child(0), "focused"), 0);
    EXPECT_EQ(numberOf(child(1), "focused"), 1);
    ASSERT_EQ(told.notifications.size(), 2U);
    EXPECT_EQ(told.notifications[1].first, child(1));
    EXPECT_EQ(told.notifications[1].second, NSAccessibilityFocusedUIElementChangedNotification);

    bridge_.update({button("go"), button("stop")}, "stop");
    EXPECT_EQ(told.notifications.size(), 2U);
    bridge_.update({button("go"), button("stop")}, std::nullopt);
    EXPECT_EQ(numberOf(child(1), "focused"), 0);
    EXPECT_EQ(told.notifications.size(), 2U);
}

TEST_F(AccessibilityBridgeTest, TellsTheFocusToTheElementThatTakesAFocusedOnesPlace) {
    AccessibilityNode moved = button("go");
    bridge_.update({moved, text("one")}, "go");
    ASSERT_EQ(told.notifications.size(), 2U);
    bridge_.update({moved, text("two")}, "go"); // it stays: a new layout and no new focus
    ASSERT_EQ(told.notifications.size(), 3U);
    moved.frame.y += 50;
    bridge_.update({moved, text("two")}, "go");
    EXPECT_EQ(numberOf(child(0), "focused"), 1);
    ASSERT_EQ(told.notifications.size(), 5U);
    EXPECT_EQ(told.notifications[4].first, child(0));
    EXPECT_EQ(told.notifications[4].second, NSAccessibilityFocusedUIElementChangedNotification);
}

// Whoever reads the page may hold an element longer than the page shows it.
TEST_F(AccessibilityBridgeTest, LeavesAnElementThatIsGoneWithoutPlaceOrPress) {
    bridge_.update({button("go")}, std::nullopt);
    const auto gone = told.children[0];
    bridge_.update({}, std::nullopt);
    EXPECT_THAT(told.children, IsEmpty());
    EXPECT_FALSE(presses(gone.get()));
    EXPECT_EQ(frameOf(gone.get()).size.width, 0);
    EXPECT_THAT(pressed_, IsEmpty());
}

// A press may take the button that was pressed off the page.
TEST_F(AccessibilityBridgeTest, OutlivesAPressThatChangesThePage) {
    AccessibilityBridge* changed = nullptr;
    AccessibilityBridge bridge(view_.get(), [this, &changed](const std::string& id) {
        changed->update({}, std::nullopt);
        pressed_.push_back(id);
    });
    changed = &bridge;
    bridge.update({button("go")}, std::nullopt);
    const auto element = told.children[0];
    EXPECT_TRUE(presses(element.get()));
    EXPECT_THAT(pressed_, ElementsAre("go"));
}

TEST_F(AccessibilityBridgeTest, TakesItsElementsWithIt) {
    std::vector<objc::Retained<NSObject>> kept;
    {
        AccessibilityBridge bridge(view_.get(),
                                   [this](const std::string& id) { pressed_.push_back(id); });
        bridge.update({button("go")}, std::nullopt);
        kept = told.children;
    }
    EXPECT_THAT(told.children, IsEmpty());
    EXPECT_FALSE(presses(kept[0].get()));
}

TEST_F(AccessibilityBridgeTest, AnnouncesThroughTheWindowWithTheHighestPriority) {
    bridge_.announce("Uninstalling");
    ASSERT_EQ(told.notifications.size(), 1U);
    EXPECT_EQ(told.notifications[0].first, window_.get());
    EXPECT_EQ(told.notifications[0].second, NSAccessibilityAnnouncementRequestedNotification);
    auto* details = static_cast<NSDictionary*>(told.announced.get());
    EXPECT_EQ(
        toString(static_cast<NSString*>(details->objectForKey(NSAccessibilityAnnouncementKey))),
        "Uninstalling");
    EXPECT_EQ(static_cast<foundation::NSNumber*>(details->objectForKey(NSAccessibilityPriorityKey))
                  ->longLongValue(),
              NSAccessibilityElement::priorityHigh);
}

} // namespace
} // namespace platform::appkit

void NSAccessibilityPostNotification(platform::system::Object element,
                                     platform::system::String notification) {
    platform::appkit::told.notifications.emplace_back(element, notification);
}

void NSAccessibilityPostNotificationWithUserInfo(platform::system::Object element,
                                                 platform::system::String notification,
                                                 platform::system::Dictionary userInfo) {
    using namespace platform;
    appkit::told.notifications.emplace_back(element, notification);
    appkit::told.announced = objc::retain<foundation::NSObject>(userInfo);
}
