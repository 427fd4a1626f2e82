#include "platform/declarative/BoxArithmetic.hpp"

namespace platform::declarative {

double alignedOffset(double container, double content, double fraction) {
    return (container - content) * fraction;
}

std::optional<double> lengthWithin(std::optional<double> offered, double before, double after) {
    return lengthLeft(offered, before + after);
}

std::optional<double> lengthLeft(std::optional<double> offered, double taken) {
    if (!offered) {
        return std::nullopt;
    }
    return std::max(0.0, *offered - taken);
}

std::optional<double> flexibleShare(std::optional<double> offered, double taken,
                                    std::size_t count) {
    const std::optional<double> rest = lengthLeft(offered, taken);
    if (!rest || count == 0) {
        return std::nullopt;
    }
    return *rest / static_cast<double>(count);
}

StackOffsets stackOffsets(std::span<const double> lengths, double spacing) {
    StackOffsets result{{}, 0};
    result.starts.reserve(lengths.size());
    for (const double length : lengths) {
        if (!result.starts.empty()) {
            result.length += spacing;
        }
        result.starts.push_back(result.length);
        result.length += length;
    }
    return result;
}

BaselineOffsets baselineOffsets(std::span<const double> heights,
                                std::span<const double> baselines) {
    BaselineOffsets result{{}, 0, 0};
    for (const double baseline : baselines) {
        result.baseline = std::max(result.baseline, baseline);
    }
    result.tops.reserve(baselines.size());
    for (std::size_t i = 0; i < baselines.size(); ++i) {
        const double top = result.baseline - baselines[i];
        result.tops.push_back(top);
        result.height = std::max(result.height, top + heights[i]);
    }
    return result;
}

} // namespace platform::declarative
