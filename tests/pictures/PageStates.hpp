#pragma once

#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"

#include <span>
#include <string_view>

namespace kovra {

/// A state of the page that is worth a picture.
struct PicturedState {
    std::string_view name;
    Phase phase;
    double progressFraction = 0;
    std::string_view hoveredButton{}; ///< its title; empty when the pointer is elsewhere
    std::string_view focusedButton{};
};

/// All of them, in the order of a run.
[[nodiscard]] std::span<const PicturedState> pageStates();

} // namespace kovra
