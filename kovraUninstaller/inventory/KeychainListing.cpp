#include "kovraUninstaller/inventory/KeychainListing.hpp"

#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <array>

namespace kovra {

namespace {

// The account attribute as `security` prints it, up to the opening quote of its value.
constexpr std::string_view accountAttribute = "\"acct\"<blob>=\"";

// The attribute followed by the product's prefix.
constexpr auto productAttribute = [] {
    constexpr std::string_view prefix = KovraFootprint::keychainAccountPrefix;
    std::array<char, accountAttribute.size() + prefix.size()> text{};
    std::ranges::copy(prefix, std::ranges::copy(accountAttribute, text.begin()).out);
    return text;
}();

// The line that contains that offset.
std::string_view lineAround(std::string_view listing, std::size_t place) {
    const std::size_t start = listing.rfind('\n', place) + 1;
    const std::size_t end = std::min(listing.find('\n', place), listing.size());
    return listing.substr(start, end - start);
}

// The value of the first account attribute in a line; empty when there is none or no closing quote.
std::string_view accountIn(std::string_view line) {
    const std::size_t attribute = platform::findText(line, accountAttribute);
    if (attribute == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = line.substr(attribute + accountAttribute.size());
    const std::size_t end = rest.find('"');
    return end == std::string_view::npos ? std::string_view() : rest.substr(0, end);
}

} // namespace

// The search string includes the prefix: the longer and rarer it is, the faster the search. Only
// lines with a hit are parsed, each once.
std::set<std::string_view> productAccountsInKeychainListing(std::string_view listing) {
    constexpr std::string_view wanted(productAttribute.data(), productAttribute.size());
    std::set<std::string_view> accounts;
    std::size_t hit = platform::findText(listing, wanted);
    while (hit != std::string_view::npos) {
        const std::string_view line = lineAround(listing, hit);
        const std::string_view account = accountIn(line);
        if (account.starts_with(KovraFootprint::keychainAccountPrefix)) {
            accounts.insert(account);
        }
        const auto lineEnd = static_cast<std::size_t>(line.data() + line.size() - listing.data());
        hit = platform::findText(listing, wanted, lineEnd);
    }
    return accounts;
}

} // namespace kovra
