#pragma once

#include "platform/appkit/Painter.hpp"

namespace platform::appkit {

/// The paint list drawn off screen, as a PNG of `scale` pixels for each point. Needs a display.
/// Autoreleased. Main thread.
[[nodiscard]] NSData* pngOf(const declarative::PaintList& list, double scale, NamedImages& images);

} // namespace platform::appkit
