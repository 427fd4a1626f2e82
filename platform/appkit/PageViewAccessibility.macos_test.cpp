// The accessibility methods of a page's view, on stand-ins for the methods that GNUstep lacks.

#include "platform/appkit/PageView.hpp"
#include "platform/appkit/testing/AccessibilityStandIns.hpp"
#include "platform/appkit/testing/Events.hpp"
#include "platform/appkit/testing/MountingStandIns.hpp"

#include <gtest/gtest.h>

#include <memory>

namespace platform::appkit {
namespace {

using testing::child;

NSObject* focusedIn(const NSView* view) {
    return InstanceMethod<"NSView", "accessibilityFocusedUIElement", NSObject*()>::send(view);
}

NSObject* elementAt(const NSView* view, NSPoint onScreen) {
    return InstanceMethod<"NSView", "accessibilityHitTest:", NSObject*(NSPoint)>::send(view,
                                                                                       onScreen);
}

class PageViewAccessibility : public ::testing::Test {
  protected:
    PageViewAccessibility() {
        testing::recordAccessibility();
        testing::addMountingStandIns();
        page_ = std::make_unique<PageView>(
            declarative::Size{100, 50}, [this](const declarative::PageValues&) {
                return declarative::button(
                    {.id = "go", .action = [this] { ++pressed_; }, .accessibilityTitle = "Go"},
                    declarative::rectangle({}).frame({20, 10}));
            });
        window_->setReleasedWhenClosed(false);
        window_->setContentView(page_->view());
    }

    ~PageViewAccessibility() override {
        window_->setContentView(nullptr);
        page_ = nullptr;
        testing::recorded = {};
        testing::mac = {};
    }

    objc::AutoreleasePool pool_{};
    objc::Retained<NSWindow> window_ = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{100, 200}, {100, 50}}, 0, NSWindow::backingBuffered, true));
    std::unique_ptr<PageView> page_{};
    int pressed_ = 0;
};

TEST_F(PageViewAccessibility, FocusesTheButtonThatHasTheKeyboardFocus) {
    ASSERT_EQ(testing::recorded.children.size(), 1U);
    EXPECT_EQ(focusedIn(page_->view()), window_.get());
    testing::keyDown(page_->view(), "\t");
    EXPECT_EQ(focusedIn(page_->view()), child(0));
}

TEST_F(PageViewAccessibility, MovesTheKeyboardFocusForAnAccessibilityClient) {
    const auto setFocused = [](bool flag) {
        InstanceMethod<"NSAccessibilityElement", "setAccessibilityFocused:", void(Bool)>::send(
            child(0), objc::toBool(flag));
    };
    setFocused(true);
    EXPECT_EQ(focusedIn(page_->view()), child(0));
    testing::keyDown(page_->view(), " ");
    EXPECT_EQ(pressed_, 1);
    setFocused(false);
    EXPECT_EQ(focusedIn(page_->view()), window_.get());
}

TEST_F(PageViewAccessibility, FindsTheButtonUnderAPointOfTheScreen) {
    const NSPoint corner = window_->frame().origin;
    EXPECT_EQ(elementAt(page_->view(), {corner.x + 50, corner.y + 25}), child(0));
    EXPECT_EQ(elementAt(page_->view(), {corner.x + 5, corner.y + 5}), window_.get());
}

TEST_F(PageViewAccessibility, ReturnsTheViewItselfOnceThePageIsGone) {
    const auto view = objc::retain(page_->view());
    page_ = nullptr;
    EXPECT_EQ(focusedIn(view.get()), view.get());
    EXPECT_EQ(elementAt(view.get(), {0, 0}), view.get());
}

} // namespace
} // namespace platform::appkit
