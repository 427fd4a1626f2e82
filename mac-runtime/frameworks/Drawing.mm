// Methods of NSFont, text containers and paragraphs that GNUstep lacks (Apple's reference of
// AppKit).

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"

namespace mac {

namespace {

// <AppKit/NSFontDescriptor.h>: the font weights by their numbers. The fonts are those of Debian's
// fonts-inter, which resembles the system font.
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

// GNUstep returns 0. The program gets the system font's value, which is near Inter's.
using CapHeight = CGFloat(id, SEL);
CapHeight* toolkitsCapHeight = nullptr;

CGFloat capHeight(id self, SEL selector) {
    return isFromProgram(__builtin_return_address(0)) ? capHeightOfSystemFont([self pointSize])
                                                      : toolkitsCapHeight(self, selector);
}

// The values of centred and right-aligned are exchanged on a Mac with Apple silicon.
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

} // namespace

double capHeightOfSystemFont(double size) {
    return 0.705 * size;
}

void useOwnDrawing() {
    toolkitsCapHeight = replaceMethod(classNamed("NSFont"), "capHeight", capHeight);
    toolkitsSetAlignment =
        replaceMethod(classNamed("NSMutableParagraphStyle"), "setAlignment:", setAlignment);
    toolkitsAlignment = replaceMethod(classNamed("NSParagraphStyle"), "alignment", alignmentOf);
}

} // namespace mac

@implementation NSFont (Mac)

+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    return [NSFont fontWithName:mac::faceOf(weight) size:size];
}

@end

@implementation NSTextContainer (Mac)

- (id)initWithSize:(NSSize)size {
    return [self initWithContainerSize:size];
}

@end
