#include "platform/appkit/AccessibilityBridge.hpp"

namespace platform::appkit {

// GNUstep has no accessibility.
struct AccessibilityBridge::Elements {};

AccessibilityBridge::AccessibilityBridge(NSView*, const Requests&) {}

AccessibilityBridge::~AccessibilityBridge() = default;

void AccessibilityBridge::update(const std::vector<declarative::AccessibilityNode>&,
                                 const std::optional<std::string>&) {}

NSObject* AccessibilityBridge::focusedElement() const {
    return nullptr;
}

NSObject* AccessibilityBridge::elementAt(NSPoint) const {
    return nullptr;
}

void AccessibilityBridge::announce(const std::string&) {}

} // namespace platform::appkit
