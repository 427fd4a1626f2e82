#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kovra {

/// The product's account names in what `security dump-keychain` prints: each once, sorted. One
/// pass over the listing, without a copy of it. Any thread.
[[nodiscard]] std::vector<std::string> productAccountsInKeychainListing(std::string_view listing);

} // namespace kovra
