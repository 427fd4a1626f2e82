#pragma once

#include <set>
#include <string_view>

namespace kovra {

/// The paths in what `lsregister -dump` prints that lie in or are a bundle of the product's input
/// method: each once, sorted. One pass over the dump, which may be hundreds of megabytes, without
/// a copy of it: the paths are views of it. Any thread.
[[nodiscard]] std::set<std::string_view>
inputMethodPathsInLaunchServicesDump(std::string_view dump);

} // namespace kovra
