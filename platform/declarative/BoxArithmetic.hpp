#pragma once

#include "platform/declarative/Geometry.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace platform::declarative {

// The arithmetic of layout: lengths in, lengths out. Knows no elements. All in points.

/// Where something of length `content` begins in something of length `container`: 0 at its start,
/// 1 at its end, 0.5 in its middle. Negative when the content is longer and not at the start.
[[nodiscard]] double alignedOffset(double container, double content, double fraction);

/// What `insets` leave of an offered length; never negative, and nothing when nothing is offered.
[[nodiscard]] std::optional<double> lengthWithin(std::optional<double> offered, double before,
                                                 double after);

/// What is left of an offered length for the next child of a stack, after `taken` by others;
/// never negative, and nothing when nothing is offered.
[[nodiscard]] std::optional<double> lengthLeft(std::optional<double> offered, double taken);

/// The part of a stack's rest that each of `count` flexible children is offered.
[[nodiscard]] std::optional<double> flexibleShare(std::optional<double> offered, double taken,
                                                  std::size_t count);

/// Where children of these lengths begin, one after the other, and where the last one ends.
struct StackOffsets {
    std::vector<double> starts;
    double length;
};

[[nodiscard]] StackOffsets stackOffsets(std::span<const double> lengths, double spacing);

/// How far from the top each child stands so that all baselines meet on one line, and how high
/// the row then is. The child with the lowest baseline stands at the top.
struct BaselineOffsets {
    std::vector<double> tops;
    double baseline;
    double height;
};

[[nodiscard]] BaselineOffsets baselineOffsets(std::span<const double> heights,
                                              std::span<const double> baselines);

} // namespace platform::declarative
