#pragma once

#include <string>
#include <vector>

namespace kovra {

/// What a step wants people to know, in the order in which it arose; whole sentences.
using Problems = std::vector<std::string>;

} // namespace kovra
