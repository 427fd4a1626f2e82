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

// Where they differ in their value alone, the one is what became of the other.
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

    // One that stays the same stays the same object, so that whoever reads it is not thrown out.
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

    // The view itself is none of what is read out, so its window speaks for it.
    void tellChildren() const {
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

    // The nodes are those that are shown, one by one.
    void tellValues(const std::vector<AccessibilityNode>& nodes) {
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

    // Another element may have the focus though the same button has it: one that took its place.
    void tellFocus() {
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
    elements_->tellChildren();
}

void AccessibilityBridge::update(const std::vector<AccessibilityNode>& nodes,
                                 const std::optional<std::string>& focused) {
    const bool changed = !elements_->shows(nodes);
    if (changed) {
        elements_->replace(nodes);
        elements_->tellChildren();
    }
    elements_->tellValues(nodes);
    const bool focusMoved = std::exchange(elements_->focused, focused) != focused;
    if (changed || focusMoved) {
        elements_->tellFocus();
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

// The application's main window speaks, with the priority of what cannot wait.
void AccessibilityBridge::announce(const std::string& text) {
    auto* details = NSMutableDictionary::dictionaryWithCapacity(2);
    details->setObject(foundation::toNSString(text), NSAccessibilityAnnouncementKey);
    details->setObject(
        foundation::NSNumber::numberWithLongLong(NSAccessibilityElement::priorityHigh),
        NSAccessibilityPriorityKey);
    NSObject* speaker = elements_->page.view->window();
    NSAccessibilityPostNotificationWithUserInfo(
        speaker, NSAccessibilityAnnouncementRequestedNotification, details);
}

} // namespace platform::appkit
