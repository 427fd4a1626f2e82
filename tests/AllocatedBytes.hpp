#pragma once

#include <cstddef>

/// How many bytes of memory this process has allocated and not freed.
[[nodiscard]] std::size_t allocatedBytes();
