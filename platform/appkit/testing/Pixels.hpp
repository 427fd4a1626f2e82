#pragma once

#include "platform/appkit/Picture.hpp"

#include <optional>
#include <string>
#include <vector>

// Small pictures of what a painter makes, looked at pixel by pixel. Main thread, with a display.

namespace platform::appkit::testing {

inline constexpr declarative::Color white{1, 1, 1, 1};
inline constexpr declarative::Color red{1, 0, 0, 1};
inline constexpr declarative::Rect all{0, 0, 24, 24};

/// What is painted on white, as a PNG file of one pixel to a point.
inline std::string painted(declarative::Size size,
                           const std::vector<declarative::PaintCommand>& commands,
                           const NamedImages::Lookup& lookup) {
    declarative::PaintList list{
        .size = size,
        .commands = {declarative::paint::FillRect{{0, 0, size.width, size.height}, white}}};
    list.commands.insert(list.commands.end(), commands.begin(), commands.end());
    NamedImages images(lookup);
    const NSData* png = pngOf(list, 1, images);
    return {static_cast<const char*>(png->bytes()), png->length()};
}

/// The same, 24 pixels on a side. There are no named pictures.
inline std::string painted(const std::vector<declarative::PaintCommand>& commands) {
    return painted({all.width, all.height}, commands,
                   [](const std::string&) { return std::nullopt; });
}

/// The green of a pixel, counted from the top left: 1 where it is white, 0 where it is red.
inline double greenAt(std::string png, Integer x, Integer y) {
    auto* data = NSData::dataWithBytesNoCopy(png.data(), png.size());
    auto* bitmap =
        ClassMethod<"NSBitmapImageRep", "imageRepWithData:", NSObject*(NSData*)>::send(data);
    auto* color =
        InstanceMethod<"NSBitmapImageRep", "colorAtX:y:", NSObject*(Integer, Integer)>::send(bitmap,
                                                                                             x, y);
    return InstanceMethod<"NSColor", "greenComponent", double()>::send(color);
}

} // namespace platform::appkit::testing
