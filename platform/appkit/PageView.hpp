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

/// A page in a window: a view that shows it, follows the pointer and the keyboard, and draws anew
/// only while something moves. Main thread.
class PageView {
  public:
    /// The page as it is now, made anew for each picture.
    using Page = std::function<declarative::Element(const declarative::PageValues&)>;

    PageView(declarative::Size size, Page page, NamedImages images = NamedImages());
    ~PageView();
    PageView(const PageView&) = delete;
    PageView& operator=(const PageView&) = delete;

    /// What shows the page; owned by this.
    [[nodiscard]] NSView* view() const { return view_.get(); }

    /// Becomes the whole content of a window, which does not outlive this.
    void mountIn(NSWindow* window);

    /// Makes the page anew and has it drawn.
    void refresh();

    /// The same once the work at hand has ended, however often it is asked for until then.
    void refreshSoon();

    /// What is told to those who have the page read to them.
    [[nodiscard]] const AccessibilityBridge& accessibility() const { return accessibility_; }

    /// Has a text said aloud to those who have the page read to them.
    void announce(const std::string& text) { accessibility_.announce(text); }

    // What the view reports.
    void draw();
    void enteredWindow();
    void pointerEntered();
    void pointerMoved(NSEvent* event);
    void pointerLeft();
    void pointerPressed(NSEvent* event);
    void pointerReleased(NSEvent* event);
    /// False when the key means nothing here.
    [[nodiscard]] bool keyPressed(NSEvent* event);

  private:
    /// A view that hands on to `page` whatever happens to it.
    [[nodiscard]] static objc::Retained<NSView> makeView(PageView* page, declarative::Size size);

    /// From now on nothing is handed on.
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
    // Work that is queued asks this whether the page is still there.
    std::shared_ptr<PageView*> self_ = std::make_shared<PageView*>(this);
};

} // namespace platform::appkit
