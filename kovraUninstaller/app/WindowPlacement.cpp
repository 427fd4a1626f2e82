#include "kovraUninstaller/app/WindowPlacement.hpp"

namespace kovra {

using platform::declarative::Point;
using platform::declarative::Rect;
using platform::declarative::Size;

Point launchOrigin(const Rect& visible, Size content) {
    return {visible.midX() - content.width / 2, visible.midY() - content.height / 2};
}

Point besideDialogsOrigin(const Rect& visible, Size frame, double unitsPerPoint) {
    constexpr double distance = 40;
    return {visible.x + distance * unitsPerPoint, visible.midY() - frame.height / 2};
}

Point centredOrigin(const Rect& visible, Size frame) {
    return {visible.midX() - frame.width / 2, visible.midY() - frame.height / 2};
}

} // namespace kovra
