#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// At least `size` bytes of what `security dump-keychain` prints: sign-in items, web accounts and
/// certificates with all their attributes, one item in fifty the product's. The same for the same
/// size.
[[nodiscard]] std::string keychainDump(std::size_t size);

} // namespace bench
