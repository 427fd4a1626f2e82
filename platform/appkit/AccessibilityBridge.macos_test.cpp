// The Mac's accessibility bridge, on stand-ins for the methods that GNUstep lacks.

#include "platform/appkit/AccessibilityBridge.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSAccessibilityElement.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/testing/AccessibilityStandIns.hpp"
#include "platform/foundation/NSNumber.hpp"

#include <gmock/gmock.h>

namespace platform::appkit {
namespace {

using declarative::AccessibilityNode;
using declarative::AccessibilityRole;
using testing::canBePressed;
using testing::child;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::numberOf;
using ::testing::Optional;
using testing::press;
using testing::recorded;
using testing::textOf;
using testing::valueOf;

NSRect frameOf(NSObject* element) {
    return InstanceMethod<"NSAccessibilityElement", "accessibilityFrame", NSRect()>::send(element);
}

/// The elements that notifications of that name were posted for, in order.
std::vector<const NSObject*> notificationsOf(const NSString* name) {
    std::vector<const NSObject*> elements;
    for (const auto& [element, posted] : recorded.notifications) {
        if (posted == name) {
            elements.push_back(element);
        }
    }
    return elements;
}

NSObject* ask(const NSObject* element, const char* selector) {
    return objc::sendMessage<NSObject*>(element, sel_registerName(selector));
}

bool isFocused(const NSObject* element) {
    return InstanceMethod<"NSAccessibilityElement", "isAccessibilityFocused", Bool()>::send(
               element) != NO;
}

void setFocused(NSObject* element, bool flag) {
    InstanceMethod<"NSAccessibilityElement", "setAccessibilityFocused:", void(Bool)>::send(
        element, objc::toBool(flag));
}

bool allows(const NSObject* element, SEL selector) {
    return InstanceMethod<"NSAccessibilityElement",
                          "isAccessibilitySelectorAllowed:", Bool(SEL)>::send(element, selector) !=
           NO;
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
        testing::recordAccessibility();
        window_->setReleasedWhenClosed(false);
        window_->setContentView(view_.get());
    }

    ~AccessibilityBridgeTest() override { recorded = {}; }

    objc::AutoreleasePool pool_{};
    objc::Retained<NSWindow> window_ = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{100, 200}, {300, 300}}, 0, NSWindow::backingBuffered, true));
    objc::Retained<NSView> view_ = objc::adopt(
        ClassMethod<"NSView", "alloc", NSView*()>::send()->initWithFrame({{0, 0}, {300, 300}}));
    std::vector<std::string> pressed_{};
    std::vector<std::optional<std::string>> focusedFromOutside_{};
    AccessibilityBridge::Requests requests_{
        .press = [this](const std::string& id) { pressed_.push_back(id); },
        .focus =
            [this](const std::optional<std::string>& id) { focusedFromOutside_.push_back(id); }};
    AccessibilityBridge bridge_{view_.get(), requests_};
};

TEST_F(AccessibilityBridgeTest, SetsTheAttributesOfEachRole) {
    bridge_.update({text("Hello"),
                    button("go"),
                    bar(0.25),
                    {{.role = AccessibilityRole::image, .label = "Icon"}, place, ""}},
                   std::nullopt);
    ASSERT_EQ(recorded.children.size(), 4U);
    EXPECT_EQ(valueOf(child(0), "role"), NSAccessibilityStaticTextRole);
    EXPECT_EQ(textOf(child(0), "value"), "Hello");
    EXPECT_EQ(valueOf(child(1), "role"), NSAccessibilityButtonRole);
    EXPECT_EQ(textOf(child(1), "title"), "Press go");
    EXPECT_EQ(numberOf(child(1), "enabled"), 1);
    EXPECT_EQ(valueOf(child(2), "role"), NSAccessibilityProgressIndicatorRole);
    EXPECT_EQ(textOf(child(2), "label"), "Progress");
    EXPECT_EQ(numberOf(child(2), "least"), 0);
    EXPECT_EQ(numberOf(child(2), "value"), 0.25);
    EXPECT_EQ(numberOf(child(2), "most"), 1);
    EXPECT_EQ(valueOf(child(3), "role"), NSAccessibilityImageRole);
    EXPECT_EQ(textOf(child(3), "label"), "Icon");
}

TEST_F(AccessibilityBridgeTest, ReportsTheWindowAndTheParentOfAnElement) {
    bridge_.update({text("one")}, std::nullopt);
    EXPECT_EQ(ask(child(0), "accessibilityParent"), window_.get());
    EXPECT_EQ(ask(child(0), "accessibilityWindow"), window_.get());
    EXPECT_EQ(ask(child(0), "accessibilityTopLevelUIElement"), window_.get());
    window_->setContentView(nullptr);
    EXPECT_EQ(ask(child(0), "accessibilityParent"), nullptr);
    EXPECT_EQ(ask(child(0), "accessibilityWindow"), nullptr);
    EXPECT_EQ(ask(child(0), "accessibilityTopLevelUIElement"), nullptr);
}

TEST_F(AccessibilityBridgeTest, LetsClientsFocusAButtonAndRemoveTheFocus) {
    bridge_.update({text("one"), button("go")}, std::nullopt);
    setFocused(child(0), true);
    EXPECT_THAT(focusedFromOutside_, IsEmpty());
    setFocused(child(1), true);
    EXPECT_THAT(focusedFromOutside_, ElementsAre(Optional(std::string("go"))));
    // Only the page's update changes the focus.
    EXPECT_FALSE(isFocused(child(1)));
    bridge_.update({text("one"), button("go")}, "go");
    EXPECT_TRUE(isFocused(child(1)));
    setFocused(child(1), false);
    EXPECT_THAT(focusedFromOutside_, ElementsAre(Optional(std::string("go")), std::nullopt));
}

TEST_F(AccessibilityBridgeTest, IgnoresTheRemovalOfAFocusThatTheElementDoesNotHave) {
    bridge_.update({button("go"), button("stop")}, "stop");
    setFocused(child(0), false);
    EXPECT_THAT(focusedFromOutside_, IsEmpty());
}

TEST_F(AccessibilityBridgeTest, AllowsFocusAndPressForButtonsOnly) {
    bridge_.update({text("one"), button("go")}, std::nullopt);
    for (const SEL change : {objc::selector<"setAccessibilityFocused:">(),
                             objc::selector<"accessibilityPerformPress">()}) {
        EXPECT_FALSE(allows(child(0), change));
        EXPECT_TRUE(allows(child(1), change));
    }
    for (const std::size_t i : {0U, 1U}) {
        EXPECT_TRUE(allows(child(i), objc::selector<"accessibilityFrame">()));
        EXPECT_FALSE(allows(child(i), objc::selector<"setAccessibilityValue:">()));
        EXPECT_FALSE(allows(child(i), objc::selector<"accessibilityPerformShowMenu">()));
    }
}

TEST_F(AccessibilityBridgeTest, PostsThatAnElementWasDestroyedBeforeTheLayoutChange) {
    bridge_.update({text("one"), button("go")}, std::nullopt);
    const auto before = recorded.children;
    recorded.notifications.clear();
    bridge_.update({button("go")}, std::nullopt);
    ASSERT_EQ(recorded.notifications.size(), 2U);
    EXPECT_EQ(recorded.notifications[0].first, before[0].get());
    EXPECT_EQ(recorded.notifications[0].second, NSAccessibilityUIElementDestroyedNotification);
    EXPECT_EQ(recorded.notifications[1].second, NSAccessibilityLayoutChangedNotification);
}

TEST_F(AccessibilityBridgeTest, PostsALayoutChangeOnceForEachChange) {
    bridge_.update({text("one")}, std::nullopt);
    EXPECT_EQ(recorded.notifications.size(), 1U);
    EXPECT_EQ(recorded.notifications[0].first, window_.get());
    EXPECT_EQ(recorded.notifications[0].second, NSAccessibilityLayoutChangedNotification);
    bridge_.update({text("one")}, std::nullopt);
    EXPECT_EQ(recorded.notifications.size(), 1U);
    bridge_.update({text("two")}, std::nullopt);
    EXPECT_THAT(notificationsOf(NSAccessibilityLayoutChangedNotification),
                ElementsAre(window_.get(), window_.get()));
}

// Notifications are posted for the window, which there is none of yet.
TEST_F(AccessibilityBridgeTest, PostsNothingWithoutAWindow) {
    window_->setContentView(nullptr);
    bridge_.update({text("one")}, std::nullopt);
    EXPECT_EQ(recorded.children.size(), 1U);
    EXPECT_THAT(recorded.notifications, IsEmpty());
}

TEST_F(AccessibilityBridgeTest, KeepsTheElementsOfUnchangedNodesInAnyOrder) {
    bridge_.update({text("one"), button("go"), bar(0.1)}, std::nullopt);
    const auto before = recorded.children;
    bridge_.update({button("go"), bar(0.2), text("one")}, std::nullopt);
    EXPECT_EQ(child(0), before[1].get());
    EXPECT_EQ(child(1), before[2].get());
    EXPECT_EQ(child(2), before[0].get());
    EXPECT_EQ(numberOf(child(1), "value"), 0.2);
}

TEST_F(AccessibilityBridgeTest, PostsOnlyAValueChangeForANewValue) {
    bridge_.update({text("one"), bar(0.1)}, std::nullopt);
    const auto before = recorded.children;
    ASSERT_EQ(recorded.notifications.size(), 1U);
    bridge_.update({text("one"), bar(0.2)}, std::nullopt);
    EXPECT_EQ(child(1), before[1].get());
    EXPECT_EQ(numberOf(child(1), "value"), 0.2);
    ASSERT_EQ(recorded.notifications.size(), 2U);
    EXPECT_EQ(recorded.notifications[1].first, child(1));
    EXPECT_EQ(recorded.notifications[1].second, NSAccessibilityValueChangedNotification);
    bridge_.update({text("one"), bar(0.2)}, std::nullopt);
    EXPECT_EQ(recorded.notifications.size(), 2U);
}

TEST_F(AccessibilityBridgeTest, HasOneElementForEachOfTwoEqualNodes) {
    bridge_.update({text("same"), text("same")}, std::nullopt);
    EXPECT_NE(child(0), child(1));
    const auto before = recorded.children;
    bridge_.update({text("same"), text("same"), text("more")}, std::nullopt);
    EXPECT_EQ(child(0), before[0].get());
    EXPECT_EQ(child(1), before[1].get());
}

TEST_F(AccessibilityBridgeTest, PressesButtonsOnly) {
    bridge_.update({text("one"), button("go")}, std::nullopt);
    EXPECT_FALSE(canBePressed(child(0)));
    EXPECT_TRUE(press(child(1)));
    EXPECT_THAT(pressed_, ElementsAre("go"));
}

TEST_F(AccessibilityBridgeTest, ComputesTheFrameOnTheScreenAfterTheWindowMoves) {
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

TEST_F(AccessibilityBridgeTest, FindsTheFocusedElement) {
    bridge_.update({button("go"), button("stop")}, "stop");
    EXPECT_EQ(bridge_.focusedElement(), child(1));
    bridge_.update({button("go"), button("stop")}, std::nullopt);
    EXPECT_EQ(bridge_.focusedElement(), window_.get());
}

TEST_F(AccessibilityBridgeTest, FindsTheElementAtAPointOfTheScreen) {
    AccessibilityNode below = button("stop");
    below.frame.y += place.height;
    bridge_.update({button("go"), below}, std::nullopt);
    for (const std::size_t i : {0U, 1U}) {
        const NSRect frame = frameOf(child(i));
        const NSPoint corner = frame.origin;
        EXPECT_EQ(bridge_.elementAt(corner), child(i));
        EXPECT_EQ(bridge_.elementAt({corner.x + 29, corner.y + 39}), child(i));
        EXPECT_EQ(bridge_.elementAt({corner.x + 30, corner.y + 39}), window_.get());
        EXPECT_EQ(bridge_.elementAt({corner.x - 1, corner.y}), window_.get());
    }
}

TEST_F(AccessibilityBridgeTest, PostsAFocusChangeForTheNewlyFocusedElement) {
    bridge_.update({button("go"), button("stop")}, "stop");
    EXPECT_FALSE(isFocused(child(0)));
    EXPECT_TRUE(isFocused(child(1)));
    ASSERT_EQ(recorded.notifications.size(), 2U);
    EXPECT_EQ(recorded.notifications[1].first, child(1));
    EXPECT_EQ(recorded.notifications[1].second, NSAccessibilityFocusedUIElementChangedNotification);

    bridge_.update({button("go"), button("stop")}, "stop");
    EXPECT_EQ(recorded.notifications.size(), 2U);
    bridge_.update({button("go"), button("stop")}, std::nullopt);
    EXPECT_FALSE(isFocused(child(1)));
    EXPECT_EQ(recorded.notifications.size(), 2U);
}

TEST_F(AccessibilityBridgeTest, PostsAFocusChangeForAnElementThatReplacesTheFocusedOne) {
    AccessibilityNode moved = button("go");
    bridge_.update({moved, text("one")}, "go");
    const auto before = recorded.children;
    bridge_.update({moved, text("two")}, "go"); // the same element: a new layout, the same focus
    EXPECT_THAT(notificationsOf(NSAccessibilityFocusedUIElementChangedNotification),
                ElementsAre(before[0].get()));
    moved.frame.y += 50;
    bridge_.update({moved, text("two")}, "go");
    EXPECT_TRUE(isFocused(child(0)));
    EXPECT_THAT(notificationsOf(NSAccessibilityFocusedUIElementChangedNotification),
                ElementsAre(before[0].get(), child(0)));
}

// Clients may hold an element longer than the page shows it.
TEST_F(AccessibilityBridgeTest, DetachesTheElementOfARemovedNode) {
    bridge_.update({button("go")}, std::nullopt);
    const auto gone = recorded.children[0];
    bridge_.update({}, std::nullopt);
    EXPECT_THAT(recorded.children, IsEmpty());
    EXPECT_FALSE(press(gone.get()));
    EXPECT_EQ(frameOf(gone.get()).size.width, 0);
    EXPECT_EQ(ask(gone.get(), "accessibilityParent"), nullptr);
    EXPECT_EQ(ask(gone.get(), "accessibilityWindow"), nullptr);
    setFocused(gone.get(), true);
    EXPECT_FALSE(isFocused(gone.get()));
    EXPECT_FALSE(allows(gone.get(), objc::selector<"setAccessibilityFocused:">()));
    EXPECT_THAT(focusedFromOutside_, IsEmpty());
    EXPECT_THAT(pressed_, IsEmpty());
}

// A press may remove the pressed button from the page.
TEST_F(AccessibilityBridgeTest, SurvivesAPressThatChangesThePage) {
    AccessibilityBridge* changed = nullptr;
    requests_.press = [this, &changed](const std::string& id) {
        changed->update({}, std::nullopt);
        pressed_.push_back(id);
    };
    AccessibilityBridge bridge(view_.get(), requests_);
    changed = &bridge;
    bridge.update({button("go")}, std::nullopt);
    const auto element = recorded.children[0];
    EXPECT_TRUE(press(element.get()));
    EXPECT_THAT(pressed_, ElementsAre("go"));
}

TEST_F(AccessibilityBridgeTest, RemovesItsElementsOnDestruction) {
    std::vector<objc::Retained<NSObject>> kept;
    {
        AccessibilityBridge bridge(view_.get(), requests_);
        bridge.update({button("go")}, std::nullopt);
        kept = recorded.children;
    }
    EXPECT_THAT(recorded.children, IsEmpty());
    EXPECT_FALSE(press(kept[0].get()));
}

TEST_F(AccessibilityBridgeTest, AnnouncesThroughTheWindowWithTheHighestPriority) {
    bridge_.announce("Uninstalling");
    ASSERT_EQ(recorded.notifications.size(), 1U);
    EXPECT_EQ(recorded.notifications[0].first, window_.get());
    EXPECT_EQ(recorded.notifications[0].second, NSAccessibilityAnnouncementRequestedNotification);
    EXPECT_THAT(testing::announcements(), ElementsAre("Uninstalling"));
    auto* details = static_cast<NSDictionary*>(recorded.announced.at(0).get());
    EXPECT_EQ(static_cast<foundation::NSNumber*>(details->objectForKey(NSAccessibilityPriorityKey))
                  ->longLongValue(),
              NSAccessibilityElement::priorityHigh);
}

} // namespace
} // namespace platform::appkit
