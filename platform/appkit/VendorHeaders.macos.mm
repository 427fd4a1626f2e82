// Checks our declarations of the system's functions, constants and structures against the vendor's
// Objective-C headers. Compiled where those headers are available; not linked. Methods are checked
// against lists made from such headers (packaging/symbols); functions of C headers, where we
// declare them.

#include "platform/appkit/AppKitSymbols.hpp"
#include "platform/appkit/NSAccessibilityElement.hpp"
#include "platform/appkit/NSApplication.hpp"
#include "platform/appkit/NSBitmapImageRep.hpp"
#include "platform/appkit/NSEvent.hpp"
#include "platform/appkit/NSGeometry.hpp"
#include "platform/appkit/NSGraphicsContext.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/appkit/NSTrackingArea.hpp"
#include "platform/appkit/NSWindow.hpp"
#include "platform/foundation/NSProcessInfo.hpp"
#include "platform/foundation/NSPropertyListSerialization.hpp"
#include "platform/foundation/NSRange.hpp"

#include <type_traits>

namespace platform::appkit {

// Whether both have the same width, signedness and value.
template <class Ours, class Theirs>
constexpr bool same(Ours ours, Theirs theirs) {
    return sizeof ours == sizeof theirs && ours == static_cast<Ours>(theirs) &&
           std::is_signed_v<Ours> == std::is_signed_v<std::underlying_type_t<Theirs>>;
}

static_assert(same(NSApplication::activationPolicyRegular, NSApplicationActivationPolicyRegular));
static_assert(same(NSBitmapImageRep::filePng, NSBitmapImageFileTypePNG));
static_assert(same(NSEvent::applicationDefinedType, NSEventTypeApplicationDefined));
static_assert(same(NSEvent::shiftKey, NSEventModifierFlagShift));
static_assert(same(NSEvent::controlKey, NSEventModifierFlagControl));
static_assert(same(NSEvent::optionKey, NSEventModifierFlagOption));
static_assert(same(NSEvent::commandKey, NSEventModifierFlagCommand));
static_assert(same(NSGraphicsContext::interpolationHigh, NSImageInterpolationHigh));
static_assert(same(NSImage::compositeSourceOver, NSCompositingOperationSourceOver));
static_assert(same(NSTrackingArea::enteredAndExited, NSTrackingMouseEnteredAndExited));
static_assert(same(NSTrackingArea::moved, NSTrackingMouseMoved));
static_assert(same(NSTrackingArea::activeInActiveApplication, NSTrackingActiveInActiveApp));
static_assert(same(NSTrackingArea::inVisibleRect, NSTrackingInVisibleRect));
static_assert(same(NSWindow::titled, NSWindowStyleMaskTitled));
static_assert(same(NSWindow::closable, NSWindowStyleMaskClosable));
static_assert(same(NSWindow::backingBuffered, NSBackingStoreBuffered));
static_assert(same(NSWindow::titleHidden, NSWindowTitleHidden));
static_assert(NSWindow::levelNormal == NSNormalWindowLevel);
static_assert(same(NSAccessibilityElement::priorityHigh, NSAccessibilityPriorityHigh));
static_assert(same(textAlignmentLeft, NSTextAlignmentLeft));
static_assert(same(textAlignmentCenter, NSTextAlignmentCenter));
static_assert(same(underlineSingle, NSUnderlineStyleSingle));

using PropertyList = foundation::NSPropertyListSerialization;
static_assert(same(PropertyList::xmlFormat, NSPropertyListXMLFormat_v1_0));
static_assert(same(PropertyList::binaryFormat, NSPropertyListBinaryFormat_v1_0));
static_assert(NSString::utf8Encoding == NSUTF8StringEncoding);
static_assert(NSString::utf16LittleEndianEncoding == NSUTF16LittleEndianStringEncoding);

// Whether both structures have the same layout. Their names in type encodings are in the lists.
template <class Ours, class Theirs>
constexpr bool sameStructure = sizeof(Ours) == sizeof(Theirs) && alignof(Ours) == alignof(Theirs);

static_assert(sameStructure<NSPoint, ::NSPoint> && sameStructure<NSSize, ::NSSize>);
static_assert(sameStructure<NSRect, ::NSRect> && sameStructure<NSRange, ::NSRange>);
static_assert(sameStructure<foundation::NSOperatingSystemVersion, ::NSOperatingSystemVersion>);
static_assert(std::is_same_v<CGFloat, ::CGFloat> && std::is_same_v<Bool, ::BOOL>);
static_assert(sizeof(Integer) == sizeof(::NSInteger) && sizeof(UInteger) == sizeof(::NSUInteger));

} // namespace platform::appkit
