#include "platform/appkit/PageView.hpp"

#include "platform/appkit/Toolkit.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/services/Queues.hpp"

#include <utility>

namespace platform::appkit {

namespace {

enum class Key { tab, backTab, press, other };

// By the character, since key codes differ between the systems.
Key keyOf(const NSEvent* event) {
    constexpr UInteger shortcutKeys =
        NSEvent::commandKey | NSEvent::controlKey | NSEvent::optionKey;
    if ((event->modifierFlags() & shortcutKeys) != 0) {
        return Key::other;
    }
    const std::string characters = foundation::toString(event->charactersIgnoringModifiers());
    const bool shift = (event->modifierFlags() & NSEvent::shiftKey) != 0;
    if (characters == "\x19" || (characters == "\t" && shift)) {
        return Key::backTab;
    }
    if (characters == "\t") {
        return Key::tab;
    }
    const bool presses = characters == " " || characters == "\r" || characters == "\n" ||
                         characters == "\x03"; // the last is Enter on the numeric keypad
    return presses ? Key::press : Key::other;
}

} // namespace

PageView::PageView(declarative::Size size, Page page, NamedImages images)
    : page_(std::move(page)), size_(size), images_(std::move(images)), view_(makeView(this, size)),
      accessibility_(view_.get(),
                     {.press = [this](const std::string& id) { press(id); },
                      .focus = [this](const std::optional<std::string>& id) { focus(id); }}),
      timer_([this] { refresh(); }) {
    refresh();
}

PageView::~PageView() {
    forgetPage(view_.get());
}

void PageView::mountIn(NSWindow* window) {
    fillWindow(window, view_.get());
    // A window that is first shown makes its initial first responder the first responder.
    window->setInitialFirstResponder(view_.get());
}

void PageView::refresh() {
    const double now = secondsNow();
    refreshIsDue_ = false;
    state_.setMotionPreference(motionPreference());
    auto layout = layOut(page_(state_.valuesAt(now)), size_, measurer_, state_.interaction());
    const bool looksDifferent = layout.paint != layout_.paint;
    layout_ = std::move(layout);
    state_.adopt(layout_, now);
    accessibility_.update(layout_.accessibility, state_.focused());
    if (looksDifferent) {
        view_->setNeedsDisplay(true);
        wakeEventLoop();
    }
    if (state_.isMovingAt(now)) {
        timer_.start();
    } else {
        timer_.stop();
    }
}

void PageView::refreshSoon() {
    if (std::exchange(refreshIsDue_, true)) {
        return;
    }
    mainQueue().post([page = std::weak_ptr(self_)] {
        if (const auto alive = page.lock(); alive && (*alive)->refreshIsDue_) {
            (*alive)->refresh();
        }
    });
}

void PageView::draw() {
    paint(layout_.paint, images_);
    wakeEventLoop();
}

void PageView::enteredWindow() {
    NSWindow* window = view_->window();
    followPointer(view_.get(), window);
    forceLightLook(window);
    window->makeFirstResponder(view_.get());
}

// The window is asked for the pointer's place: the event that GNUstep sends when the pointer enters
// has it in other coordinates.
void PageView::pointerEntered() {
    if (const NSWindow* window = view_->window()) {
        pointerIsAt(window->mouseLocation());
    }
}

void PageView::pointerMoved(NSEvent* event) {
    pointerIsAt(event->locationInWindow());
}

void PageView::pointerIsAt(NSPoint inWindow) {
    state_.pointerMoved(pointIn(inWindow), secondsNow());
    refresh();
}

void PageView::pointerLeft() {
    state_.pointerMoved(std::nullopt, secondsNow());
    refresh();
}

void PageView::pointerPressed(NSEvent* event) {
    const auto point = pointIn(event->locationInWindow());
    state_.pointerMoved(point, secondsNow());
    state_.pointerPressed(point);
    refresh();
}

void PageView::pointerReleased(NSEvent* event) {
    const auto pressed = state_.pointerReleased(pointIn(event->locationInWindow()));
    refresh();
    if (pressed) {
        press(*pressed);
    }
}

bool PageView::keyPressed(NSEvent* event) {
    using Direction = declarative::PageState::FocusDirection;
    switch (keyOf(event)) {
    case Key::tab: state_.moveFocus(Direction::next); break;
    case Key::backTab: state_.moveFocus(Direction::previous); break;
    case Key::press:
        if (!state_.focused()) {
            return false;
        }
        // Key repeats are ignored.
        if (!event->isARepeat()) {
            press(std::string(*state_.focused()));
        }
        return true;
    case Key::other: return false;
    }
    refresh();
    return true;
}

// The action is copied: it may change the page, and with that destroy its button.
void PageView::press(const std::string& buttonID) {
    if (const auto* area = layout_.buttonWithID(buttonID)) {
        const auto action = area->button.action;
        action();
        refreshSoon();
    }
}

void PageView::focus(const std::optional<std::string>& buttonID) {
    state_.focus(buttonID);
    refresh();
}

declarative::Point PageView::pointIn(NSPoint inWindow) const {
    return toPoint(view_->fromWindow(inWindow, nullptr));
}

} // namespace platform::appkit
