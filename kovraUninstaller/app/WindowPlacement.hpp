#pragma once

#include "platform/declarative/Geometry.hpp"

namespace kovra {

// Origins of the main window: its lower left corner in screen coordinates, y upwards. `visible` is
// the screen's visible frame, without menu bar and dock. Any thread.

/// At launch: the content, and not the frame around it, stands in the middle.
[[nodiscard]] platform::declarative::Point launchOrigin(const platform::declarative::Rect& visible,
                                                        platform::declarative::Size content);

/// Beside the system's dialogs, which stand in the middle: 40 points from the left, halfway up.
[[nodiscard]] platform::declarative::Point
besideDialogsOrigin(const platform::declarative::Rect& visible, platform::declarative::Size frame,
                    double unitsPerPoint);

/// The whole frame, title bar included, in the middle.
[[nodiscard]] platform::declarative::Point centredOrigin(const platform::declarative::Rect& visible,
                                                         platform::declarative::Size frame);

} // namespace kovra
