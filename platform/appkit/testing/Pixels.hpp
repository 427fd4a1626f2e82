#pragma once

#include "platform/appkit/Picture.hpp"

#include <optional>
#include <string>
#include <vector>

// Small paint lists, drawn off screen and compared by pixels. Main thread, with a display.

namespace platform::appkit::testing {

inline constexpr declarative::Color white{1, 1, 1, 1};
inline constexpr declarative::Color red{1, 0, 0, 1};
inline constexpr declarative::Rect all{0, 0, 24, 24};

/// The commands drawn on white, as a PNG of one pixel for each point.
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

/// The same, 24 by 24 pixels, without named images.
inline std::string painted(const std::vector<declarative::PaintCommand>& commands) {
    return painted({all.width, all.height}, commands,
                   [](const std::string&) { return std::nullopt; });
}

/// The green component of a pixel, from the top left: 1 in white, 0 in red.
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
