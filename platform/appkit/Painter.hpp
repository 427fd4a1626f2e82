#pragma once

#include "platform/appkit/NamedImages.hpp"
#include "platform/declarative/PaintList.hpp"

namespace platform::appkit {

/// Carries out the commands in the current graphics context, which must be flipped and in points.
/// Main thread.
void paint(const declarative::PaintList& list, NamedImages& images);

} // namespace platform::appkit
