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

// Stand-ins for what assistive programs are told through a Mac's views and elements, which this
// toolkit's lack. The functions that the Mac has beside are in AccessibilityStandIns.cpp.

namespace platform::appkit::testing {

/// What the bridge has told the system.
struct Told {
    std::map<std::pair<const NSObject*, std::string>, NSObject*> values{};
    std::vector<objc::Retained<NSObject>> children{};
    std::vector<std::pair<const NSObject*, NSString*>> notifications{};
    std::vector<objc::Retained<NSObject>> announced{}; ///< with each announcement, in order
};

inline Told told;

/// Adds the methods, once, and forgets what was told so far.
void startListening();

[[nodiscard]] NSObject* valueOf(const NSObject* element, const char* name);
[[nodiscard]] std::string textOf(const NSObject* element, const char* name);
[[nodiscard]] double numberOf(const NSObject* element, const char* name);

[[nodiscard]] inline NSObject* child(std::size_t index) {
    return told.children.at(index).get();
}

[[nodiscard]] inline bool canBePressed(const NSObject* element) {
    return responds<"accessibilityPerformPress">(element);
}

/// What has been said aloud, in order.
[[nodiscard]] std::vector<std::string> announcements();

/// Presses a button's element, as an assistive program does. Whether it took the press.
bool press(NSObject* element);

/// Who stands for the view, which is no element itself; null while it is in no window.
[[nodiscard]] NSObject* standsFor(const NSView* view);

} // namespace platform::appkit::testing
