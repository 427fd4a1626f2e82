#include "platform/appkit/AccessibilityBridge.hpp"

#include "platform/appkit/AccessibilityElement.macos.hpp"
#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSNumber.hpp"

#include <algorithm>
#include <utility>

namespace platform::appkit {

using declarative::AccessibilityNode;

namespace {

// Nodes that differ in their value only are the same node with a new value.
bool sameNode(const AccessibilityNode& a, const AccessibilityNode& b) {
    return a.description.role == b.description.role && a.description.label == b.description.label &&
           a.frame == b.frame && a.buttonID == b.buttonID;
}

bool contains(const NSRect& rect, NSPoint point) {
    return point.x >= rect.origin.x && point.x < rect.origin.x + rect.size.width &&
           point.y >= rect.origin.y && point.y < rect.origin.y + rect.size.height;
}

} // namespace

struct AccessibilityBridge::Elements {
    struct Shown {
        AccessibilityNode node;
        objc::Retained<NSAccessibilityElement> element;
    };

    AccessiblePage page;
    std::vector<Shown> shown{};
    std::optional<std::string> focused{};
    objc::Retained<NSAccessibilityElement> focusedElement{};

    // A node that is still there keeps its element object, so that VoiceOver's cursor stays on it.
    void replace(const std::vector<AccessibilityNode>& nodes) {
        std::vector<Shown> now;
        for (const AccessibilityNode& node : nodes) {
            const auto kept = std::ranges::find_if(
                shown, [&node](const Shown& old) { return sameNode(old.node, node); });
            if (kept != shown.end()) {
                now.push_back(std::move(*kept));
                shown.erase(kept);
            } else {
                now.push_back({node, makeAccessibilityElement(page, node)});
            }
        }
        retireAll();
        shown = std::move(now);
    }

    void retireAll() {
        for (const Shown& old : shown) {
            retireAccessibilityElement(old.element.get());
        }
        shown.clear();
    }

    // The view is not an accessibility element itself, so its window posts the notification.
    void publishChildren() const {
        auto* children = foundation::NSMutableArray::arrayWithCapacity(shown.size());
        for (const Shown& one : shown) {
            children->addObject(one.element.get());
        }
        InstanceMethod<"NSView", "setAccessibilityChildren:", void(NSArray*)>::send(page.view,
                                                                                    children);
        if (NSWindow* window = page.view->window()) {
            NSAccessibilityPostNotification(window, NSAccessibilityLayoutChangedNotification);
        }
    }

    // `nodes` correspond one to one to `shown`.
    void publishValues(const std::vector<AccessibilityNode>& nodes) {
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            Shown& one = shown[i];
            const auto& value = nodes[i].description.value;
            if (std::exchange(one.node.description.value, value) != value && value) {
                setProgress(one.element.get(), *value);
                NSAccessibilityPostNotification(one.element.get(),
                                                NSAccessibilityValueChangedNotification);
            }
        }
    }

    // The focused element may be another one though the focused button is the same.
    void publishFocus() {
        objc::Retained<NSAccessibilityElement> now;
        for (const Shown& one : shown) {
            const bool isFocused = focused && one.node.buttonID == *focused;
            setFocusedState(one.element.get(), isFocused);
            if (isFocused) {
                now = one.element;
            }
        }
        if (now && now.get() != focusedElement.get()) {
            NSAccessibilityPostNotification(now.get(),
                                            NSAccessibilityFocusedUIElementChangedNotification);
        }
        focusedElement = std::move(now);
    }

    [[nodiscard]] bool shows(const std::vector<AccessibilityNode>& nodes) const {
        return std::ranges::equal(shown, nodes, sameNode, &Shown::node);
    }
};

AccessibilityBridge::AccessibilityBridge(NSView* view, const Requests& requests)
    : elements_(
          std::make_unique<Elements>(Elements{.page = {view, requests.press, requests.focus}})) {}

AccessibilityBridge::~AccessibilityBridge() {
    elements_->retireAll();
    elements_->publishChildren();
}

void AccessibilityBridge::update(const std::vector<AccessibilityNode>& nodes,
                                 const std::optional<std::string>& focused) {
    const bool changed = !elements_->shows(nodes);
    if (changed) {
        elements_->replace(nodes);
        elements_->publishChildren();
    }
    elements_->publishValues(nodes);
    const bool focusMoved = std::exchange(elements_->focused, focused) != focused;
    if (changed || focusMoved) {
        elements_->publishFocus();
    }
}

NSObject* AccessibilityBridge::focusedElement() const {
    NSObject* focused = elements_->focusedElement.get();
    return focused != nullptr ? focused : NSAccessibilityUnignoredAncestor(elements_->page.view);
}

NSObject* AccessibilityBridge::elementAt(NSPoint onScreen) const {
    for (const auto& one : elements_->shown) {
        if (contains(one.element->frame(), onScreen)) {
            return one.element.get();
        }
    }
    return NSAccessibilityUnignoredAncestor(elements_->page.view);
}

// The window posts the announcement, with high priority.
void AccessibilityBridge::announce(const std::string& text) {
    auto* details = NSMutableDictionary::dictionaryWithCapacity(2);
    details->setObject(foundation::toNSString(text), NSAccessibilityAnnouncementKey);
    details->setObject(
        foundation::NSNumber::numberWithLongLong(NSAccessibilityElement::priorityHigh),
        NSAccessibilityPriorityKey);
    NSObject* window = elements_->page.view->window();
    NSAccessibilityPostNotificationWithUserInfo(
        window, NSAccessibilityAnnouncementRequestedNotification, details);
}

} // namespace platform::appkit
