#pragma once

#include <set>
#include <string_view>

namespace kovra {

/// The product's account names in what `security dump-keychain` prints, or in a part of it that
/// consists of whole lines: each once, sorted. One pass, without a copy of the text: the names are
/// views of it. Any thread.
[[nodiscard]] std::set<std::string_view> productAccountsInKeychainListing(std::string_view listing);

} // namespace kovra
