#pragma once

#include "platform/appkit/NSView.hpp"
#include "platform/declarative/PageLayout.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform::appkit {

/// Tells the system's assistive programs what is on a page. Main thread.
class AccessibilityBridge {
  public:
    /// `view` shows the page and outlives the bridge; `press` gets the id of a button that such a
    /// program presses.
    AccessibilityBridge(NSView* view, const std::function<void(const std::string&)>& press);
    ~AccessibilityBridge();
    AccessibilityBridge(const AccessibilityBridge&) = delete;
    AccessibilityBridge& operator=(const AccessibilityBridge&) = delete;

    /// What is there now, in reading order, and which button has the keyboard's focus.
    void update(const std::vector<declarative::AccessibilityNode>& nodes,
                const std::optional<std::string>& focused);

    /// Has a text said aloud.
    void announce(const std::string& text);

  private:
    struct Elements;
    std::unique_ptr<Elements> elements_;
};

} // namespace platform::appkit
