#pragma once

#include <set>
#include <string_view>

namespace kovra {

/// The paths in what `lsregister -dump` prints, or in a part of it that consists of whole lines,
/// that are a bundle of the product's input method or lie in one: each once, sorted. One pass,
/// without a copy of the text: the paths are views of it. Any thread.
[[nodiscard]] std::set<std::string_view>
inputMethodPathsInLaunchServicesDump(std::string_view dump);

} // namespace kovra
