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
    /// What such a program may ask of the page: that a button be pressed, by its id, and that one
    /// has the keyboard's focus, or none.
    struct Requests {
        std::function<void(const std::string&)> press;
        std::function<void(const std::optional<std::string>&)> focus;
    };

    /// `view` shows the page and outlives the bridge.
    AccessibilityBridge(NSView* view, const Requests& requests);
    ~AccessibilityBridge();
    AccessibilityBridge(const AccessibilityBridge&) = delete;
    AccessibilityBridge& operator=(const AccessibilityBridge&) = delete;

    /// What is there now, in reading order, and which button has the keyboard's focus.
    void update(const std::vector<declarative::AccessibilityNode>& nodes,
                const std::optional<std::string>& focused);

    /// Which element has the keyboard's focus, and which is at a point of the screen; whoever
    /// stands for the whole page when none of them is. Null where the system has no such programs.
    [[nodiscard]] NSObject* focusedElement() const;
    [[nodiscard]] NSObject* elementAt(NSPoint onScreen) const;

    /// Has a text said aloud.
    void announce(const std::string& text);

  private:
    struct Elements;
    std::unique_ptr<Elements> elements_;
};

} // namespace platform::appkit
