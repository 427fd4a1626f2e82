#pragma once

#include "platform/appkit/NSAccessibilityElement.hpp"
#include "platform/appkit/NSView.hpp"
#include "platform/declarative/PageLayout.hpp"

#include <functional>
#include <optional>
#include <string>

namespace platform::appkit {

/// What an element needs to know of its page. Outlives the element.
struct AccessiblePage {
    NSView* view;
    std::function<void(const std::string&)> press;
    /// Gives the keyboard's focus to the button of that id; without one, to none.
    std::function<void(const std::optional<std::string>&)> focus;
};

/// One thing on the page, as the system's assistive programs see it. Its frame on the screen, its
/// parent and its window are computed when they are asked for, so that they hold wherever the view
/// and the window go. A button, and nothing else, can be pressed and given the focus. Main thread.
[[nodiscard]] objc::Retained<NSAccessibilityElement>
makeAccessibilityElement(const AccessiblePage& page, const declarative::AccessibilityNode& node);

/// From now on the element of a progress indicator tells that value, from 0 to 1.
void setProgress(NSAccessibilityElement* element, double value);

/// From now on the element says whether it has the keyboard's focus. Moves no focus.
void setFocusedState(NSAccessibilityElement* element, bool focused);

/// From now on the element has neither frame, parent nor window and cannot be pressed, whoever
/// still holds it. Posts that it was destroyed.
void retireAccessibilityElement(NSAccessibilityElement* element);

} // namespace platform::appkit
