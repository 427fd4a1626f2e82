#pragma once

#include "platform/appkit/AccessibilityBridge.hpp"
#include "platform/appkit/NSEvent.hpp"
#include "platform/appkit/Painter.hpp"
#include "platform/appkit/RepeatingTimer.hpp"
#include "platform/appkit/TextLayout.hpp"
#include "platform/declarative/PageState.hpp"

#include <functional>
#include <memory>
#include <string>

namespace platform::appkit {

/// A page in a window: a view that shows it and handles the mouse and the keyboard. It redraws only
/// after a change and while something moves. Main thread.
class PageView {
  public:
    /// Computes the page for the current values; called for each frame.
    using Page = std::function<declarative::Element(const declarative::PageValues&)>;

    PageView(declarative::Size size, Page page, NamedImages images = NamedImages());
    ~PageView();
    PageView(const PageView&) = delete;
    PageView& operator=(const PageView&) = delete;

    /// The view of the page; owned by this.
    [[nodiscard]] NSView* view() const { return view_.get(); }

    /// Makes the view the content of the window, which must not outlive this.
    void mountIn(NSWindow* window);

    /// Computes the page, and redraws it if it has changed.
    void refresh();

    /// Refreshes once from the main queue, however often it is called before that.
    void refreshSoon();

    /// The accessibility elements of the page.
    [[nodiscard]] const AccessibilityBridge& accessibility() const { return accessibility_; }

    /// Posts an accessibility announcement: VoiceOver speaks the text.
    void announce(const std::string& text) { accessibility_.announce(text); }

    // Called by the view.
    void draw();
    void enteredWindow();
    void pointerEntered();
    void pointerMoved(NSEvent* event);
    void pointerLeft();
    void pointerPressed(NSEvent* event);
    void pointerReleased(NSEvent* event);
    /// Whether the key was handled.
    [[nodiscard]] bool keyPressed(NSEvent* event);

  private:
    /// A view that calls `page` for its events.
    [[nodiscard]] static objc::Retained<NSView> makeView(PageView* page, declarative::Size size);

    /// Removes the page from the view, which may outlive it.
    static void forgetPage(NSView* view);

    void press(const std::string& buttonID);
    void focus(const std::optional<std::string>& buttonID);
    void pointerIsAt(NSPoint inWindow);
    [[nodiscard]] declarative::Point pointIn(NSPoint inWindow) const;

    Page page_;
    declarative::Size size_;
    NamedImages images_;
    SystemMeasurer measurer_;
    declarative::PageState state_;
    declarative::PageLayout layout_;
    objc::Retained<NSView> view_;
    AccessibilityBridge accessibility_;
    RepeatingTimer timer_;
    bool refreshIsDue_ = false;
    // Work in the main queue holds a weak pointer to this, to know whether the page still exists.
    std::shared_ptr<PageView*> self_ = std::make_shared<PageView*>(this);
};

} // namespace platform::appkit
