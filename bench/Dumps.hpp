#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// At least `size` bytes of what `security dump-keychain` prints: sign-in items, web accounts and
/// certificates with all their attributes, one item in fifty the product's. The same for the same
/// size.
[[nodiscard]] std::string keychainDump(std::size_t size);

/// Some 32 MB of what `lsregister -dump` prints: 12,784 records in 390,000 lines, a few of them of
/// the input method.
[[nodiscard]] std::string launchServicesDump();

} // namespace bench
