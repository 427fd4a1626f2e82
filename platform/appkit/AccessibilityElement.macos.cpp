#include "platform/appkit/AccessibilityElement.macos.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/ClassBuilder.hpp"

#include <memory>
#include <string_view>

namespace platform::appkit {

using declarative::AccessibilityNode;
using declarative::AccessibilityRole;
using foundation::NSNumber;
using foundation::toNSString;

namespace {

struct Subject {
    const AccessiblePage& page;
    NSRect frame;
    std::string buttonID;
    bool focused = false;
};

constexpr const char* subjectVariable = "subject";

Subject* subjectOf(const NSObject* element) {
    return static_cast<Subject*>(objc::pointerVariable(element, subjectVariable));
}

NSRect accessibilityFrame(NSAccessibilityElement* element) {
    const Subject* subject = subjectOf(element);
    if (subject == nullptr || subject->page.view->window() == nullptr) {
        return {};
    }
    const NSView* view = subject->page.view;
    return view->window()->rectToScreen(view->rectToView(subject->frame, nullptr));
}

// The view is ignored by accessibility, so this is normally the window.
NSObject* accessibilityParent(NSAccessibilityElement* element) {
    const Subject* subject = subjectOf(element);
    return subject == nullptr
               ? nullptr
               : static_cast<NSObject*>(NSAccessibilityUnignoredAncestor(subject->page.view));
}

// Also the top-level element: the page is never in a sheet or drawer.
NSObject* accessibilityWindow(NSAccessibilityElement* element) {
    const Subject* subject = subjectOf(element);
    return subject == nullptr ? nullptr : subject->page.view->window();
}

Bool isAccessibilityFocused(NSAccessibilityElement* element) {
    const Subject* subject = subjectOf(element);
    return objc::toBool(subject != nullptr && subject->focused);
}

// Called by accessibility clients only. The page then moves its focus and updates the elements by
// setFocusedState.
void setAccessibilityFocused(NSAccessibilityElement* element, Bool focused) {
    const Subject* subject = subjectOf(element);
    if (subject == nullptr || subject->buttonID.empty()) {
        return;
    }
    const auto focus = subject->page.focus;
    if (focused != NO) {
        focus(std::string(subject->buttonID));
    } else if (subject->focused) {
        focus(std::nullopt);
    }
}

// Clients may focus and press buttons only. Getters are always allowed.
Bool isAccessibilitySelectorAllowed(NSAccessibilityElement* element, SEL selector) {
    const std::string_view name = objc::nameOf(selector);
    if (name == "setAccessibilityFocused:" || name == "accessibilityPerformPress") {
        const Subject* subject = subjectOf(element);
        return objc::toBool(subject != nullptr && !subject->buttonID.empty());
    }
    const bool changes =
        name.starts_with("setAccessibility") || name.starts_with("accessibilityPerform");
    return objc::toBool(!changes && element->respondsToSelector(selector));
}

Bool accessibilityPerformPress(NSAccessibilityElement* element) {
    const Subject* subject = subjectOf(element);
    if (subject == nullptr) {
        return objc::toBool(false);
    }
    const auto press = subject->page.press;
    press(std::string(subject->buttonID));
    return objc::toBool(true);
}

constexpr const char* elementClassName = "KovraAccessibilityElement";

Class elementClass() {
    static const Class made =
        objc::ClassBuilder(elementClassName, "NSAccessibilityElement")
            .pointerVariable(subjectVariable)
            .method<accessibilityFrame>("accessibilityFrame")
            .method<accessibilityParent>("accessibilityParent")
            .method<accessibilityWindow>("accessibilityWindow")
            .method<accessibilityWindow>("accessibilityTopLevelUIElement")
            .method<isAccessibilityFocused>("isAccessibilityFocused")
            .method<setAccessibilityFocused>("setAccessibilityFocused:")
            .method<isAccessibilitySelectorAllowed>("isAccessibilitySelectorAllowed:")
            .registered();
    return made;
}

// A class of its own, since clients offer a press for each element that has the method.
Class buttonClass() {
    static const Class made = [] {
        elementClass();
        return objc::ClassBuilder("KovraAccessibilityButton", elementClassName)
            .method<accessibilityPerformPress>("accessibilityPerformPress")
            .registered();
    }();
    return made;
}

Class classFor(AccessibilityRole role) {
    return role == AccessibilityRole::button ? buttonClass() : elementClass();
}

NSString* roleOf(AccessibilityRole role) {
    switch (role) {
    case AccessibilityRole::staticText: return NSAccessibilityStaticTextRole;
    case AccessibilityRole::button: return NSAccessibilityButtonRole;
    case AccessibilityRole::image: return NSAccessibilityImageRole;
    case AccessibilityRole::progressIndicator: return NSAccessibilityProgressIndicatorRole;
    }
    return NSAccessibilityStaticTextRole;
}

// The text of a static text is its value, that of a button its title, of all others the label.
void describe(NSAccessibilityElement* element, const AccessibilityNode& node) {
    const auto& described = node.description;
    NSString* label = toNSString(described.label);
    element->setRole(roleOf(described.role));
    switch (described.role) {
    case AccessibilityRole::staticText: element->setValue(label); break;
    case AccessibilityRole::button:
        element->setTitle(label);
        element->setEnabled(true);
        break;
    case AccessibilityRole::image: element->setLabel(label); break;
    case AccessibilityRole::progressIndicator:
        element->setLabel(label);
        element->setMinValue(NSNumber::numberWithDouble(0));
        element->setMaxValue(NSNumber::numberWithDouble(1));
        setProgress(element, described.value.value_or(0));
        break;
    }
}

} // namespace

objc::Retained<NSAccessibilityElement> makeAccessibilityElement(const AccessiblePage& page,
                                                                const AccessibilityNode& node) {
    auto element = objc::adopt(objc::sendMessage<NSAccessibilityElement*>(
        classFor(node.description.role), objc::selector<"new">()));
    auto subject = std::make_unique<Subject>(Subject{page, toNSRect(node.frame), node.buttonID});
    objc::setPointerVariable(element.get(), subjectVariable, subject.release());
    describe(element.get(), node);
    return element;
}

void setProgress(NSAccessibilityElement* element, double value) {
    element->setValue(NSNumber::numberWithDouble(value));
}

void setFocusedState(NSAccessibilityElement* element, bool focused) {
    if (Subject* subject = subjectOf(element)) {
        subject->focused = focused;
    }
}

void retireAccessibilityElement(NSAccessibilityElement* element) {
    NSAccessibilityPostNotification(element, NSAccessibilityUIElementDestroyedNotification);
    const std::unique_ptr<const Subject> subject(subjectOf(element));
    objc::setPointerVariable(element, subjectVariable, nullptr);
}

} // namespace platform::appkit
