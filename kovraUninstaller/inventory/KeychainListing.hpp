#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kovra {

/// The product's account names in what `security dump-keychain` prints, or in a part of it that
/// consists of whole lines: each once, sorted. One pass, without a copy of the text. Any thread.
[[nodiscard]] std::vector<std::string> productAccountsInKeychainListing(std::string_view listing);

} // namespace kovra
