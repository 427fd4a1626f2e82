#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/PageView.hpp"
#include "platform/appkit/testing/Events.hpp"
#include "platform/objc/ClassBuilder.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace platform::appkit {
namespace {

using declarative::Element;

constexpr declarative::Size size{100, 50};
constexpr NSPoint onButton{50, 25};

/// A page that is one button all over, and how often it was pressed and drawn.
struct Pressable {
    int pressed = 0;
    int made = 0;

    PageView::Page page() {
        return [this](const declarative::PageValues&) {
            ++made;
            return declarative::button(
                {.id = "button", .action = [this] { ++pressed; }, .accessibilityTitle = "Button"},
                declarative::rectangle({}).frame({100, 50}));
        };
    }
};

/// Two buttons one above the other, and which were pressed.
struct TwoButtons {
    std::string pressed;

    PageView::Page page() {
        return [this](const declarative::PageValues&) {
            return declarative::verticalStack({}, {button("first"), button("second")});
        };
    }

  private:
    Element button(const std::string& id) {
        return declarative::button(
            {.id = id, .action = [this, id] { pressed += id + " "; }, .accessibilityTitle = id},
            declarative::rectangle({}).frame({100, 25}));
    }
};

NSEvent* lastHandedOn = nullptr;

void noteKey(NSObject*, NSEvent* event) {
    lastHandedOn = event;
}

// The next responder, which gets the keys that a view does not handle.
NSObject* responder() {
    static const Class made = objc::ClassBuilder("KovraTestResponder", "NSResponder")
                                  .method<noteKey>("keyDown:")
                                  .registered();
    static NSObject* only = objc::sendMessage<NSObject*>(made, objc::selector<"new">());
    lastHandedOn = nullptr;
    return only;
}

void setNextResponder(NSView* view, NSObject* next) {
    InstanceMethod<"NSResponder", "setNextResponder:", void(NSObject*)>::send(view, next);
}

TEST(PageView, PressesTheFocusedButtonByKeyAndLeavesShortcutsToOthers) {
    Pressable pressable;
    PageView page(size, pressable.page());
    setNextResponder(page.view(), responder());
    testing::keyDown(page.view(), " ");
    EXPECT_NE(lastHandedOn, nullptr); // no button has the focus
    testing::keyDown(page.view(), "\t");
    testing::keyDown(page.view(), " ");
    EXPECT_EQ(pressable.pressed, 1);

    lastHandedOn = nullptr;
    testing::keyDown(page.view(), " ", NSEvent::commandKey);
    EXPECT_EQ(pressable.pressed, 1);
    EXPECT_NE(lastHandedOn, nullptr);
}

TEST(PageView, PressesOnceWhileAKeyIsHeld) {
    for (const std::string key : {" ", "\r", "\x03"}) {
        Pressable pressable;
        PageView page(size, pressable.page());
        setNextResponder(page.view(), responder());
        testing::keyDown(page.view(), "\t");
        testing::keyDown(page.view(), key);
        for (int i = 0; i < 5; ++i) {
            testing::keyDown(page.view(), key, 0, testing::Held::yes);
        }
        EXPECT_EQ(pressable.pressed, 1);
        EXPECT_EQ(lastHandedOn, nullptr); // nor does the next responder get it
    }
}

// Shift-Tab is the character 0x19 on a Mac, and a tab elsewhere.
TEST(PageView, MovesTheFocusBackwardsByEitherCharacter) {
    for (const std::string backwards : {"\x19", "\t"}) {
        TwoButtons buttons;
        PageView page(size, buttons.page());
        testing::keyDown(page.view(), backwards, NSEvent::shiftKey);
        testing::keyDown(page.view(), " ");
        EXPECT_EQ(buttons.pressed, "second ");
        testing::keyDown(page.view(), backwards, NSEvent::shiftKey);
        testing::keyDown(page.view(), " ");
        EXPECT_EQ(buttons.pressed, "second first ");
    }
}

TEST(PageView, HoversAtAMouseDownWithoutAPriorMove) {
    double hover = 0;
    PageView page(size, [&hover](const declarative::PageValues& values) {
        hover = values.hover("link");
        return declarative::button({.id = "link",
                                    .action = [] {},
                                    .accessibilityTitle = "Link",
                                    .hoverFade = declarative::EaseInOut{.duration = 0}},
                                   declarative::rectangle({}).frame({100, 50}));
    });
    EXPECT_EQ(hover, 0);
    testing::mouse(page.view(), testing::Mouse::down, onButton);
    EXPECT_EQ(hover, 1);
    testing::mouse(page.view(), testing::Mouse::exited, onButton);
    page.refresh();
    EXPECT_EQ(hover, 0);
}

TEST(PageView, PressesAButtonOnMouseDownAndUp) {
    Pressable pressable;
    PageView page(size, pressable.page());
    testing::mouse(page.view(), testing::Mouse::down, onButton);
    EXPECT_EQ(pressable.pressed, 0);
    testing::mouse(page.view(), testing::Mouse::up, onButton);
    EXPECT_EQ(pressable.pressed, 1);
}

// The toolkit may retain the view longer than the page exists.
TEST(PageView, LeavesAViewThatOutlivesItInert) {
    Pressable pressable;
    auto page = std::make_unique<PageView>(size, pressable.page());
    const auto view = objc::retain(page->view());
    page = nullptr;

    const int made = pressable.made;
    setNextResponder(view.get(), responder());
    testing::mouse(view.get(), testing::Mouse::entered, onButton);
    testing::mouse(view.get(), testing::Mouse::moved, onButton);
    testing::mouse(view.get(), testing::Mouse::down, onButton);
    testing::mouse(view.get(), testing::Mouse::up, onButton);
    testing::mouse(view.get(), testing::Mouse::exited, onButton);
    testing::keyDown(view.get(), " ");
    InstanceMethod<"NSView", "drawRect:", void(NSRect)>::send(view.get(), view->bounds());
    EXPECT_EQ(pressable.pressed, 0);
    EXPECT_EQ(pressable.made, made);
    EXPECT_NE(lastHandedOn, nullptr);
}

} // namespace
} // namespace platform::appkit
