#include "platform/appkit/AccessibilityElement.macos.hpp"

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/ClassBuilder.hpp"

#include <memory>

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
};

constexpr const char* subjectVariable = "subject";

const Subject* subjectOf(const NSObject* element) {
    return static_cast<const Subject*>(objc::pointerVariable(element, subjectVariable));
}

NSRect accessibilityFrame(NSAccessibilityElement* element) {
    const Subject* subject = subjectOf(element);
    if (subject == nullptr || subject->page.view->window() == nullptr) {
        return {};
    }
    const NSView* view = subject->page.view;
    return view->window()->rectToScreen(view->rectToView(subject->frame, nullptr));
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
    static const Class made = objc::ClassBuilder(elementClassName, "NSAccessibilityElement")
                                  .pointerVariable(subjectVariable)
                                  .method<accessibilityFrame>("accessibilityFrame")
                                  .registered();
    return made;
}

// A class of its own: whatever has the method is offered to be pressed.
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

// A text is its own value; a button is known by its title; all else by its label.
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
    element->setParent(page.view);
    describe(element.get(), node);
    return element;
}

void setProgress(NSAccessibilityElement* element, double value) {
    element->setValue(NSNumber::numberWithDouble(value));
}

void retireAccessibilityElement(NSAccessibilityElement* element) {
    const std::unique_ptr<const Subject> subject(subjectOf(element));
    objc::setPointerVariable(element, subjectVariable, nullptr);
}

} // namespace platform::appkit
