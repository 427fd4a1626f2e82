// The keychain parser, compared with a plain one that reads line by line.

#include "kovraUninstaller/inventory/KeychainListing.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

#include <set>
#include <sstream>
#include <string>

namespace {

std::set<std::string> accountsLineByLine(const std::string& listing) {
    const std::string marker = "\"acct\"<blob>=\"";
    std::set<std::string> accounts;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t at = line.find(marker);
        if (at == std::string::npos) {
            continue;
        }
        const std::string rest = line.substr(at + marker.size());
        const std::size_t quote = rest.find('"');
        if (quote != std::string::npos && rest.starts_with("ai.kovra.")) {
            const std::string account = rest.substr(0, quote);
            if (account.starts_with("ai.kovra.")) {
                accounts.insert(account);
            }
        }
    }
    return accounts;
}

void compare(const std::string& listing) {
    const auto found = kovra::productAccountsInKeychainListing(listing);
    require(std::set<std::string>(found.begin(), found.end()) == accountsLineByLine(listing),
            "the parser finds what a line-by-line reader finds");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view listing = asText(bytes, size);
    compare(std::string(listing));
    if (isTriedAtLength(listing)) {
        compare(atLength(listing));
    }
    return 0;
}
