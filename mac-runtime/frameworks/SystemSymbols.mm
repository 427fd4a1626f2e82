// NSImage's system symbols and their configuration (Apple's reference of AppKit), and the
// transparency layers of Core Graphics in which they are coloured (<CoreGraphics/CGContext.h>). The
// symbols are part of macOS: the outlines of Linux's program replace them, so that both programs
// draw the same pixels. A name without an outline is an unknown symbol.

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "platform/declarative/SymbolOutlines.linux.hpp"

#include <cmath>
#include <utility>

namespace mac {

namespace {

namespace declarative = platform::declarative;

declarative::FontWeight weightOf(double number) {
    using enum declarative::FontWeight;
    for (const auto& [weight, known] : {std::pair{light, -0.4}, std::pair{regular, 0.0},
                                        std::pair{medium, 0.23}, std::pair{semibold, 0.3}}) {
        if (number == known) {
            return weight;
        }
    }
    fail("symbols have no weight %g here", number);
}

std::optional<declarative::SymbolOutline> outlineOf(NSString* name, double size, double weight) {
    return declarative::symbolOutline([name UTF8String],
                                      { .size = size, .weight = weightOf(weight) });
}

// The flatness with which Linux's program draws its curves.
NSBezierPath* bezierPath(const declarative::Path& path) {
    NSBezierPath* made = [NSBezierPath bezierPath];
    [made setFlatness:0.1];
    for (const auto& [kind, points] : path.steps()) {
        const auto point = [&points = points](std::size_t i) {
            return NSMakePoint(points.at(i).x, points.at(i).y);
        };
        using enum declarative::PathStep::Kind;
        switch (kind) {
        case move: [made moveToPoint:point(0)]; break;
        case line: [made lineToPoint:point(0)]; break;
        case cubic:
            [made curveToPoint:point(2) controlPoint1:point(0) controlPoint2:point(1)];
            break;
        case close: [made closePath]; break;
        }
    }
    return made;
}

// The toolkit has no transparency layers. A layer may hold one symbol, whose opaque parts are then
// filled with a colour: the same as filling the symbol's path with that colour.
struct Layer {
    bool begun = false;
    bool keepsOpaqueParts = false;
    NSBezierPath* symbol = nil; // retained
};

Layer layer;

void drawInLayer(NSBezierPath* symbol) {
    if (!layer.begun || layer.symbol != nil) {
        fail("a symbol is drawn that is not the only one in a transparency layer");
    }
    layer.symbol = [symbol retain];
}

struct Rect {
    double x, y, width, height;
};

namespace darwin {

void beginTransparencyLayer(void*, void* information) {
    if (layer.begun || information != nullptr) {
        fail("CGContextBeginTransparencyLayer in a layer, or with a dictionary");
    }
    layer.begun = true;
}

void endTransparencyLayer(void*) {
    if (!layer.begun) {
        fail("CGContextEndTransparencyLayer without a layer");
    }
    [layer.symbol release];
    layer = {};
}

void setBlendMode(void*, int mode) {
    constexpr int sourceIn = 18;
    if (mode != sourceIn || !layer.begun) {
        fail("CGContextSetBlendMode %d", mode);
    }
    layer.keepsOpaqueParts = true;
}

void fillRect(void*, Rect rect) {
    if (!layer.keepsOpaqueParts || layer.symbol == nil) {
        fail("CGContextFillRect without a symbol and the blend mode of its colour");
    }
    // Curves exceed their control points by less than a thousandth of a point.
    const NSRect bounds = NSInsetRect([layer.symbol bounds], 0.001, 0.001);
    if (!NSContainsRect(NSMakeRect(rect.x, rect.y, rect.width, rect.height), bounds)) {
        fail("CGContextFillRect of a part of a symbol");
    }
    [layer.symbol fill];
}

} // namespace darwin

} // namespace

Symbols transparencyLayerSymbols() {
    static const Symbol symbols[] = {
        {"_CGContextBeginTransparencyLayer", address(darwin::beginTransparencyLayer)},
        {"_CGContextEndTransparencyLayer", address(darwin::endTransparencyLayer)},
        {"_CGContextSetBlendMode", address(darwin::setBlendMode)},
        {"_CGContextFillRect", address(darwin::fillRect)},
    };
    return symbols;
}

} // namespace mac

@interface NSImageSymbolConfiguration : NSObject {
  @public
    CGFloat size;
    CGFloat weight;
    BOOL monochrome;
}
@end

@implementation NSImageSymbolConfiguration

+ (id)configurationWithPointSize:(CGFloat)points weight:(CGFloat)number {
    NSImageSymbolConfiguration* made = [[self new] autorelease];
    made->size = points;
    made->weight = number;
    return made;
}

+ (id)configurationPreferringMonochrome {
    NSImageSymbolConfiguration* made = [[self new] autorelease];
    made->monochrome = YES;
    return made;
}

// The values of the other configuration override this one's.
- (id)configurationByApplyingConfiguration:(NSImageSymbolConfiguration*)other {
    NSImageSymbolConfiguration* sized = other->size == 0 ? self : other;
    NSImageSymbolConfiguration* made =
        [NSImageSymbolConfiguration configurationWithPointSize:sized->size weight:sized->weight];
    made->monochrome = monochrome || other->monochrome;
    return made;
}

@end

// The image of a symbol has the size of its outline; if nothing of it is below the baseline, the
// height of the capital letters, on whose middle symbols are centred.
@interface MacSystemSymbol : NSImage {
  @public
    NSString* name;
    CGFloat points;
    CGFloat weight;
}
@end

@implementation MacSystemSymbol

- (void)dealloc {
    [name release];
    [super dealloc];
}

- (NSSize)size {
    const auto outline = mac::outlineOf(name, points, weight);
    const auto& [width, height] = outline->metrics.size;
    if (outline->metrics.firstBaseline < height) {
        return NSMakeSize(width, height);
    }
    return NSMakeSize(width, std::fmax(height, mac::capHeightOfSystemFont(points)));
}

- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)part
         operation:(NSCompositingOperation)operation
          fraction:(CGFloat)fraction
    respectFlipped:(BOOL)flipped
             hints:(NSDictionary*)hints {
    const NSSize size = [self size];
    if (!NSIsEmptyRect(part) || operation != NSCompositeSourceOver || fraction != 1 || !flipped ||
        std::hypot(rect.size.width - size.width, rect.size.height - size.height) > 0.001) {
        mac::fail("a symbol is drawn in part, scaled, or by another operation");
    }
    const auto outline = mac::outlineOf(name, points, weight);
    const double above = size.height - outline->metrics.size.height;
    mac::drawInLayer(
        mac::bezierPath(outline->path.transformed(1, {rect.origin.x, rect.origin.y + above})));
}

@end

@implementation NSImage (SystemSymbols)

+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)text {
    constexpr CGFloat systemFontSize = 13;
    if (!mac::outlineOf(name, systemFontSize, 0)) {
        return nil;
    }
    MacSystemSymbol* made = [[MacSystemSymbol new] autorelease];
    made->name = [name copy];
    made->points = systemFontSize;
    return made;
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    if (![self isKindOfClass:[MacSystemSymbol class]] || !configuration->monochrome) {
        mac::fail("imageWithSymbolConfiguration: of no symbol, or of more than one colour");
    }
    MacSystemSymbol* made = [[MacSystemSymbol new] autorelease];
    made->name = [static_cast<MacSystemSymbol*>(self)->name copy];
    made->points = configuration->size;
    made->weight = configuration->weight;
    return made;
}

@end
