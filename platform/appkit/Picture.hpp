#pragma once

#include "platform/appkit/Painter.hpp"

namespace platform::appkit {

/// The page as a PNG file of `scale` pixels to a point, painted off screen. Needs a display.
/// Autoreleased. Main thread.
[[nodiscard]] NSData* pngOf(const declarative::PaintList& list, double scale, NamedImages& images);

} // namespace platform::appkit
