#pragma once

#include "platform/declarative/Geometry.hpp"
#include "platform/objc/Encoding.hpp"

// AppKit's structures, and its constants that differ between the two systems.

namespace platform::appkit {

using CGFloat = double;

struct NSPoint {
    CGFloat x;
    CGFloat y;
};

struct NSSize {
    CGFloat width;
    CGFloat height;
};

struct NSRect {
    NSPoint origin;
    NSSize size;
};

[[nodiscard]] constexpr NSPoint toNSPoint(declarative::Point p) {
    return {p.x, p.y};
}

[[nodiscard]] constexpr NSRect toNSRect(const declarative::Rect& r) {
    return {{r.x, r.y}, {r.width, r.height}};
}

[[nodiscard]] constexpr declarative::Point toPoint(NSPoint p) {
    return {p.x, p.y};
}

[[nodiscard]] constexpr declarative::Rect toRect(const NSRect& r) {
    return {r.origin.x, r.origin.y, r.size.width, r.size.height};
}

inline constexpr objc::Integer underlineSingle = 1;
inline constexpr objc::Integer textAlignmentLeft = 0;
#if defined(__APPLE__)
inline constexpr objc::Integer textAlignmentCenter = 1;
#else
inline constexpr objc::Integer textAlignmentCenter = 2;
#endif

} // namespace platform::appkit

#if defined(__APPLE__)
template <>
struct platform::objc::Encoding<platform::appkit::NSPoint> : EncodedAs<"{CGPoint=dd}"> {};

template <>
struct platform::objc::Encoding<platform::appkit::NSSize> : EncodedAs<"{CGSize=dd}"> {};

template <>
struct platform::objc::Encoding<platform::appkit::NSRect>
    : EncodedAs<"{CGRect={CGPoint=dd}{CGSize=dd}}"> {};
#else
template <>
struct platform::objc::Encoding<platform::appkit::NSPoint> : EncodedAs<"{_NSPoint=dd}"> {};

template <>
struct platform::objc::Encoding<platform::appkit::NSSize> : EncodedAs<"{_NSSize=dd}"> {};

template <>
struct platform::objc::Encoding<platform::appkit::NSRect>
    : EncodedAs<"{_NSRect={_NSPoint=dd}{_NSSize=dd}}"> {};
#endif
