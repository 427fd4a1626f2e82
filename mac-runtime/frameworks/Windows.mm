// What GNUstep lacks of NSWindow, NSView and NSAppearance (Apple's reference of AppKit).

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

@implementation NSWindow (Mac)

// A title that cannot be hidden becomes blank: an empty one would be the program's name.
- (void)setTitleVisibility:(NSInteger)visibility {
    if (visibility == 1) {
        [self setTitle:@" "];
    }
}

// Nothing is restored here.
- (void)setRestorable:(bool)isRestorable {
}

// The one look that is here is the light one.
- (void)setAppearance:(NSAppearance*)appearance {
    if (![[appearance name] isEqual:@"NSAppearanceNameAqua"]) {
        mac::fail("setAppearance: of another than the light look");
    }
}

@end

@implementation NSView (Mac)

// The pointer's ways over the whole view. GNUstep tells an older kind of rectangle of them.
- (void)addTrackingArea:(NSTrackingArea*)area {
    constexpr NSUInteger known = 0x1 | 0x2 | 0x40 | 0x200;
    if (([area options] & ~known) != 0 || [area owner] != self) {
        mac::fail("addTrackingArea: with the options %#lx",
                  static_cast<unsigned long>([area options]));
    }
    [[self window] setAcceptsMouseMovedEvents:YES];
    [self addTrackingRect:[self bounds] owner:self userData:nullptr assumeInside:NO];
}

@end

namespace mac {

Symbols windowSymbols() {
    static NSString* const aqua = @"NSAppearanceNameAqua";
    static const Symbol symbols[] = {
        {"_NSAppearanceNameAqua", &aqua},
    };
    return symbols;
}

} // namespace mac
