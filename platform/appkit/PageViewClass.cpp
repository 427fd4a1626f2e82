#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/PageView.hpp"
#include "platform/objc/ClassBuilder.hpp"

namespace platform::appkit {

namespace {

constexpr const char* pageVariable = "page";

PageView* pageOf(const NSView* view) {
    return static_cast<PageView*>(objc::pointerVariable(view, pageVariable));
}

template <auto Member>
void handOn(NSView* view, NSEvent* event) {
    if (PageView* page = pageOf(view)) {
        (page->*Member)(event);
    }
}

void drawRect(NSView* view, NSRect) {
    if (PageView* page = pageOf(view)) {
        page->draw();
    }
}

void viewDidMoveToWindow(NSView* view) {
    PageView* page = pageOf(view);
    if (page != nullptr && view->window() != nullptr) {
        page->enteredWindow();
    }
}

void mouseEntered(NSView* view, NSEvent*) {
    if (PageView* page = pageOf(view)) {
        page->pointerEntered();
    }
}

void mouseExited(NSView* view, NSEvent*) {
    if (PageView* page = pageOf(view)) {
        page->pointerLeft();
    }
}

// Keys that the page does not handle go up the responder chain, as in any view.
void keyDown(NSView* view, NSEvent* event) {
    PageView* page = pageOf(view);
    if (page == nullptr || !page->keyPressed(event)) {
        InstanceMethod<"NSResponder", "keyDown:", void(NSEvent*)>::send(view->nextResponder(),
                                                                        event);
    }
}

NSObject* accessibilityFocusedUIElement(NSView* view) {
    const PageView* page = pageOf(view);
    return page == nullptr ? view : page->accessibility().focusedElement();
}

NSObject* accessibilityHitTest(NSView* view, NSPoint onScreen) {
    const PageView* page = pageOf(view);
    return page == nullptr ? view : page->accessibility().elementAt(onScreen);
}

Bool yes(NSView*) {
    return objc::toBool(true);
}

Class pageViewClass() {
    static const Class made =
        objc::ClassBuilder("KovraPageView", "NSView")
            .pointerVariable(pageVariable)
            .method<drawRect>("drawRect:")
            .method<yes>("isFlipped")
            .method<yes>("isOpaque")
            .method<yes>("acceptsFirstResponder")
            .method<viewDidMoveToWindow>("viewDidMoveToWindow")
            .method<mouseEntered>("mouseEntered:")
            .method<handOn<&PageView::pointerMoved>>("mouseMoved:")
            .method<handOn<&PageView::pointerMoved>>("mouseDragged:")
            .method<handOn<&PageView::pointerPressed>>("mouseDown:")
            .method<handOn<&PageView::pointerReleased>>("mouseUp:")
            .method<mouseExited>("mouseExited:")
            .method<keyDown>("keyDown:")
            .method<accessibilityFocusedUIElement>("accessibilityFocusedUIElement")
            .method<accessibilityHitTest>("accessibilityHitTest:")
            .registered();
    return made;
}

} // namespace

objc::Retained<NSView> PageView::makeView(PageView* page, declarative::Size size) {
    auto view = objc::adopt(objc::sendMessage<NSView*>(pageViewClass(), objc::selector<"alloc">())
                                ->initWithFrame({{0, 0}, {size.width, size.height}}));
    objc::setPointerVariable(view.get(), pageVariable, page);
    return view;
}

void PageView::forgetPage(NSView* view) {
    objc::setPointerVariable(view, pageVariable, nullptr);
}

} // namespace platform::appkit
