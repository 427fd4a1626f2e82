#include "platform/appkit/Picture.hpp"

#include "platform/appkit/NSWindow.hpp"
#include "platform/appkit/Painter.hpp"
#include "platform/objc/ClassBuilder.hpp"

namespace platform::appkit {

namespace {

struct Subject {
    const declarative::PaintList& list;
    NamedImages& images;
};

constexpr const char* subjectVariable = "subject";

void drawRect(NSView* view, NSRect) {
    const auto* subject = static_cast<const Subject*>(objc::pointerVariable(view, subjectVariable));
    paint(subject->list, subject->images);
}

Bool isFlipped(NSView*) {
    return objc::toBool(true);
}

Class pictureViewClass() {
    static const Class made = objc::ClassBuilder("KovraPictureView", "NSView")
                                  .pointerVariable(subjectVariable)
                                  .method<drawRect>("drawRect:")
                                  .method<isFlipped>("isFlipped")
                                  .registered();
    return made;
}

} // namespace

// The scale is the ratio of the view's frame to its bounds. The window is never shown.
NSData* pngOf(const declarative::PaintList& list, double scale, NamedImages& images) {
    Subject subject{list, images};
    const NSRect frame{{0, 0}, {list.size.width * scale, list.size.height * scale}};
    const auto window = objc::adopt(
        NSWindow::alloc()->initWithContentRect(frame, 0, NSWindow::backingBuffered, false));
    window->setReleasedWhenClosed(false);
    const auto view =
        objc::adopt(objc::sendMessage<NSView*>(pictureViewClass(), objc::selector<"alloc">())
                        ->initWithFrame(frame));
    objc::setPointerVariable(view.get(), subjectVariable, &subject);
    window->setContentView(view.get());
    view->setBoundsSize({list.size.width, list.size.height});
    window->orderFront(nullptr);
    window->display();
    NSBitmapImageRep* bitmap = view->bitmapForCaching(view->bounds());
    view->cacheDisplay(view->bounds(), bitmap);
    window->setContentView(nullptr);
    return bitmap->representationUsingType(NSBitmapImageRep::filePng, nullptr);
}

} // namespace platform::appkit
