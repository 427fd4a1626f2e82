#pragma once

#include "platform/declarative/PageState.hpp"

namespace kovra {

/// The bar that stands in the primary button's place while the steps run: a pale track, a fill
/// that follows `progressFraction` (0 to 1) on a spring without overshoot, and its label.
[[nodiscard]] platform::declarative::Element
progressBar(double progressFraction, const platform::declarative::PageValues& values);

/// The shape of the primary button with a muted text in it, which cannot be pressed.
[[nodiscard]] platform::declarative::Element checkingPlaceholder();

} // namespace kovra
