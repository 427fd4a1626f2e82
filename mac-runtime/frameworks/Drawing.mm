// What GNUstep lacks of NSFont, NSImage, NSColor and paragraphs (Apple's reference of AppKit), and
// Core Graphics' calls on the current context (<CoreGraphics/CGContext.h>).

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

namespace mac {

namespace {

// <AppKit/NSFontDescriptor.h>: the weights by their numbers. The faces are those of Debian's
// fonts-inter, whose shapes are near the system font's.
NSString* faceOf(double weight) {
    struct Face {
        double weight;
        NSString* name;
    };

    const Face faces[] = {{-0.4, @"Inter-Light"},
                          {0.0, @"Inter-Regular"},
                          {0.23, @"Inter-Medium"},
                          {0.3, @"Inter-SemiBold"},
                          {0.4, @"Inter-Bold"}};
    for (const Face& face : faces) {
        if (face.weight == weight) {
            return face.name;
        }
    }
    fail("the system font has no weight %g here", weight);
}

// Centred and right-aligned have each other's numbers on a Mac with Apple silicon.
using SetAlignment = void(id, SEL, NSInteger);
SetAlignment* toolkitsSetAlignment = nullptr;

void setAlignment(id self, SEL selector, NSInteger alignment) {
    if (isFromProgram(__builtin_return_address(0))) {
        switch (alignment) {
        case 0: break;
        case 1: alignment = NSCenterTextAlignment; break;
        case 2: alignment = NSRightTextAlignment; break;
        default: fail("setAlignment: %ld", alignment);
        }
    }
    toolkitsSetAlignment(self, selector, alignment);
}

using Alignment = NSTextAlignment(id, SEL);
Alignment* toolkitsAlignment = nullptr;

NSTextAlignment alignmentOf(id self, SEL selector) {
    const NSTextAlignment alignment = toolkitsAlignment(self, selector);
    if (!isFromProgram(__builtin_return_address(0))) {
        return alignment;
    }
    switch (alignment) {
    case NSLeftTextAlignment: return alignment;
    case NSCenterTextAlignment: return static_cast<NSTextAlignment>(1);
    case NSRightTextAlignment: return static_cast<NSTextAlignment>(2);
    default: fail("alignment %ld", static_cast<long>(alignment));
    }
}

struct Rect {
    double x, y, width, height;
};

namespace darwin {

// Symbols are drawn by these, and the system has none here (NSImage below).
void beginTransparencyLayer(void*, void*) {
    fail("CGContextBeginTransparencyLayer is not there");
}

void endTransparencyLayer(void*) {
    fail("CGContextEndTransparencyLayer is not there");
}

void setBlendMode(void*, int) {
    fail("CGContextSetBlendMode is not there");
}

void fillRect(void*, Rect) {
    fail("CGContextFillRect is not there");
}

} // namespace darwin

} // namespace

void useOwnDrawing() {
    toolkitsSetAlignment =
        replaceMethod(classNamed("NSMutableParagraphStyle"), "setAlignment:", setAlignment);
    toolkitsAlignment = replaceMethod(classNamed("NSParagraphStyle"), "alignment", alignmentOf);
}

Symbols drawingSymbols() {
    static const Symbol symbols[] = {
        {"_CGContextBeginTransparencyLayer", address(darwin::beginTransparencyLayer)},
        {"_CGContextEndTransparencyLayer", address(darwin::endTransparencyLayer)},
        {"_CGContextSetBlendMode", address(darwin::setBlendMode)},
        {"_CGContextFillRect", address(darwin::fillRect)},
    };
    return symbols;
}

} // namespace mac

@implementation NSFont (Mac)

+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    return [NSFont fontWithName:mac::faceOf(weight) size:size];
}

@end

// The system's symbols are nowhere but on a Mac; without one the program draws its own.
@implementation NSImage (Mac)

+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)text {
    return nil;
}

- (NSImage*)imageWithSymbolConfiguration:(id)configuration {
    mac::fail("imageWithSymbolConfiguration: without a symbol");
}

@end

@interface NSImageSymbolConfiguration : NSObject
@end

@implementation NSImageSymbolConfiguration

+ (id)configurationWithPointSize:(CGFloat)size weight:(CGFloat)weight {
    return [[self new] autorelease];
}

+ (id)configurationPreferringMonochrome {
    return [[self new] autorelease];
}

- (id)configurationByApplyingConfiguration:(id)other {
    return self;
}

@end

@implementation NSTextContainer (Mac)

- (id)initWithSize:(NSSize)size {
    return [self initWithContainerSize:size];
}

@end
