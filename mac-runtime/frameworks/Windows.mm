// Methods of NSWindow, NSView and NSAppearance that GNUstep lacks (Apple's reference of AppKit).

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

@implementation NSWindow (Mac)

// GNUstep cannot hide a title, so it becomes a space. An empty one would show the program's name.
- (void)setTitleVisibility:(NSInteger)visibility {
    if (visibility == 1) {
        [self setTitle:@" "];
    }
}

// State restoration does not exist here.
- (void)setRestorable:(bool)isRestorable {
}

// The only appearance is the light one.
- (void)setAppearance:(NSAppearance*)appearance {
    if (![[appearance name] isEqual:@"NSAppearanceNameAqua"]) {
        mac::fail("setAppearance: of another than the light look");
    }
}

@end

@implementation NSView (Mac)

// Tracks the mouse over the whole view. GNUstep has only the older tracking rectangles.
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
