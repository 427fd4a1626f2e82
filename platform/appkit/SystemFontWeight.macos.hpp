#pragma once

#include "platform/appkit/NSGeometry.hpp"
#include "platform/declarative/Text.hpp"

namespace platform::appkit {

/// The number behind the system's name of that weight.
[[nodiscard]] constexpr CGFloat systemFontWeight(declarative::FontWeight weight) {
    switch (weight) {
    case declarative::FontWeight::light: return -0.4;
    case declarative::FontWeight::regular: return 0;
    case declarative::FontWeight::medium: return 0.23;
    case declarative::FontWeight::semibold: return 0.3;
    }
    return 0;
}

} // namespace platform::appkit
