#pragma once

#include "platform/appkit/NSAccessibilityElement.hpp"
#include "platform/appkit/NSView.hpp"
#include "platform/declarative/PageLayout.hpp"

#include <functional>
#include <string>

namespace platform::appkit {

/// What an element needs to know of its page. Outlives the element.
struct AccessiblePage {
    NSView* view;
    std::function<void(const std::string&)> press;
};

/// One thing on the page, as the system's assistive programs see it: it knows its place on the
/// screen wherever the window goes, and a button, and nothing else, can be pressed. Main thread.
[[nodiscard]] objc::Retained<NSAccessibilityElement>
makeAccessibilityElement(const AccessiblePage& page, const declarative::AccessibilityNode& node);

/// From now on the element of a progress indicator tells that value, from 0 to 1.
void setProgress(NSAccessibilityElement* element, double value);

/// From now on the element has no place and cannot be pressed, whoever still holds it.
void retireAccessibilityElement(NSAccessibilityElement* element);

} // namespace platform::appkit
