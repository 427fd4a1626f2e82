#pragma once

#include "platform/appkit/NSAccessibilityElement.hpp"
#include "platform/appkit/NSView.hpp"
#include "platform/declarative/PageLayout.hpp"

#include <functional>
#include <optional>
#include <string>

namespace platform::appkit {

/// The page of an element; outlives the element.
struct AccessiblePage {
    NSView* view;
    std::function<void(const std::string&)> press;
    /// Gives the keyboard focus to the button of that id; without an id, removes it.
    std::function<void(const std::optional<std::string>&)> focus;
};

/// An accessibility element of the page. Its frame on the screen, its parent and its window are
/// computed on demand, so they stay correct when the view or the window moves. Only buttons can be
/// pressed and focused. Main thread.
[[nodiscard]] objc::Retained<NSAccessibilityElement>
makeAccessibilityElement(const AccessiblePage& page, const declarative::AccessibilityNode& node);

/// Sets the value of a progress indicator's element, from 0 to 1.
void setProgress(NSAccessibilityElement* element, double value);

/// Sets whether the element reports the keyboard focus; does not move the focus.
void setFocusedState(NSAccessibilityElement* element, bool focused);

/// Detaches the element from the page: it has no frame, parent or window any more and cannot be
/// pressed. Posts that it was destroyed. Clients may still hold it.
void retireAccessibilityElement(NSAccessibilityElement* element);

} // namespace platform::appkit
