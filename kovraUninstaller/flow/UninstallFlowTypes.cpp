#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"

#include <algorithm>

namespace kovra {

std::vector<StepDisplay> freshSteps() {
    std::vector<StepDisplay> rows;
    rows.reserve(allCases<UninstallStepID>.size());
    for (const UninstallStepID id : allCases<UninstallStepID>) {
        rows.push_back({.id = id});
    }
    return rows;
}

double progressFraction(std::span<const StepDisplay> steps) {
    const auto ended = std::ranges::count_if(steps, [](const StepDisplay& row) {
        return row.state.kind() == StepState::Kind::done ||
               row.state.kind() == StepState::Kind::warning;
    });
    return static_cast<double>(ended) / static_cast<double>(std::max<std::size_t>(steps.size(), 1));
}

} // namespace kovra
