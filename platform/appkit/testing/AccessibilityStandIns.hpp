#pragma once

#include "platform/appkit/NSAccessibilityElement.hpp"
#include "platform/appkit/NSView.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/testing/AddMethod.hpp"

#include <map>
#include <string>
#include <utility>
#include <vector>

// Stand-ins for the accessibility methods of views and elements, which GNUstep lacks; those for
// AppKit's accessibility functions are in AccessibilityStandIns.cpp.

namespace platform::appkit::testing {

/// What the bridge has set and posted.
struct Recorded {
    std::map<std::pair<const NSObject*, std::string>, NSObject*> values{};
    std::vector<objc::Retained<NSObject>> children{};
    std::vector<std::pair<const NSObject*, NSString*>> notifications{};
    std::vector<objc::Retained<NSObject>>
        announced{}; ///< the user info of each announcement, in order
};

inline Recorded recorded;

/// Adds the methods, once, and clears the record.
void recordAccessibility();

[[nodiscard]] NSObject* valueOf(const NSObject* element, const char* name);
[[nodiscard]] std::string textOf(const NSObject* element, const char* name);
[[nodiscard]] double numberOf(const NSObject* element, const char* name);

[[nodiscard]] inline NSObject* child(std::size_t index) {
    return recorded.children.at(index).get();
}

[[nodiscard]] inline bool canBePressed(const NSObject* element) {
    return responds<"accessibilityPerformPress">(element);
}

/// The texts of the announcements, in order.
[[nodiscard]] std::vector<std::string> announcements();

/// Presses a button's element, as an accessibility client does; whether it was pressed.
bool press(NSObject* element);

/// The result of NSAccessibilityUnignoredAncestor: the view's window; null without one.
[[nodiscard]] NSObject* unignoredAncestorOf(const NSView* view);

} // namespace platform::appkit::testing
