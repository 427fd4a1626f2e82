#pragma once

#include "platform/appkit/NSView.hpp"
#include "platform/declarative/PageLayout.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform::appkit {

/// Makes a page accessible to VoiceOver and other accessibility clients. Main thread.
class AccessibilityBridge {
  public:
    /// What a client may request: the press of a button, by its id, and the keyboard focus for a
    /// button, or for none.
    struct Requests {
        std::function<void(const std::string&)> press;
        std::function<void(const std::optional<std::string>&)> focus;
    };

    /// `view` shows the page and outlives the bridge.
    AccessibilityBridge(NSView* view, const Requests& requests);
    ~AccessibilityBridge();
    AccessibilityBridge(const AccessibilityBridge&) = delete;
    AccessibilityBridge& operator=(const AccessibilityBridge&) = delete;

    /// The page's elements in reading order, and the id of the button that has the keyboard focus.
    void update(const std::vector<declarative::AccessibilityNode>& nodes,
                const std::optional<std::string>& focused);

    /// The element that has the keyboard focus, and the one at a point of the screen; if there is
    /// none, the view's nearest ancestor that is an element. Null on Linux.
    [[nodiscard]] NSObject* focusedElement() const;
    [[nodiscard]] NSObject* elementAt(NSPoint onScreen) const;

    /// Posts an announcement: VoiceOver speaks the text.
    void announce(const std::string& text);

  private:
    struct Elements;
    std::unique_ptr<Elements> elements_;
};

} // namespace platform::appkit
