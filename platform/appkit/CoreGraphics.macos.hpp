#pragma once

#include <cstdint>

// The functions of Core Graphics in use. Where the vendor's header is available, the compiler
// checks these declarations against it.
#if __has_include(<CoreGraphics/CoreGraphics.h>)
#include <CoreGraphics/CoreGraphics.h>
#else
struct CGPoint {
    double x;
    double y;
};

struct CGSize {
    double width;
    double height;
};

struct CGRect {
    CGPoint origin;
    CGSize size;
};
#endif

extern "C" {
using CFDictionaryRef = const struct __CFDictionary*;
using CGContextRef = struct CGContext*;
enum CGBlendMode : std::int32_t;
void CGContextBeginTransparencyLayer(CGContextRef context, CFDictionaryRef auxiliaryInfo);
void CGContextEndTransparencyLayer(CGContextRef context);
void CGContextFillRect(CGContextRef context, CGRect rect);
void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode);
}

inline constexpr CGBlendMode blendModeSourceIn{18};
#if __has_include(<CoreGraphics/CoreGraphics.h>)
static_assert(blendModeSourceIn == kCGBlendModeSourceIn);
#endif
