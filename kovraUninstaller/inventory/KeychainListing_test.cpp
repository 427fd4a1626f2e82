#include "kovraUninstaller/inventory/KeychainListing.hpp"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

namespace kovra {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Copies, since the tests pass temporary texts.
std::vector<std::string> accountsIn(std::string_view listing) {
    const auto accounts = productAccountsInKeychainListing(listing);
    return {accounts.begin(), accounts.end()};
}

std::string account(const std::string& name) {
    return "    \"acct\"<blob>=\"" + name + "\"\n";
}

// An item as the tool prints it.
std::string item(const std::string& accountLine) {
    return "keychain: \"/Users/sam/Library/Keychains/login.keychain-db\"\n"
           "version: 512\n"
           "class: \"genp\"\n"
           "attributes:\n"
           "    0x00000007 <blob>=\"kovra sign-in\"\n"
           "    0x00000008 <blob>=<NULL>\n" +
           accountLine +
           "    \"cdat\"<timedate>=0x32303235303331343039323635335A00  \"20250314092653Z\\000\"\n"
           "    \"svce\"<blob>=\"ai.kovra.service\"\n";
}

TEST(KeychainListing, GivesTheProductsAccountsAmongOthers) {
    EXPECT_THAT(accountsIn(item(account("sam@example.org")) +
                           item(account("ai.kovra.auth.session")) + item(account("wifi"))),
                ElementsAre("ai.kovra.auth.session"));
}

TEST(KeychainListing, GivesEachAccountOnceAndSorted) {
    EXPECT_THAT(accountsIn(account("ai.kovra.b") + account("ai.kovra.a") + account("ai.kovra.b") +
                           account("ai.kovra.B") + account("ai.kovra.")),
                ElementsAre("ai.kovra.", "ai.kovra.B", "ai.kovra.a", "ai.kovra.b"));
}

TEST(KeychainListing, GoesByThePrefixToTheLetter) {
    EXPECT_THAT(accountsIn(account("ai.kovra") + account("AI.kovra.x") + account(" ai.kovra.x") +
                           account("xai.kovra.x") + account("ai.kovraX.x") + account("ai_kovra.x")),
                IsEmpty());
}

TEST(KeychainListing, LooksOnlyAtTheAccountAttributeAsTheToolPrintsIt) {
    for (const char* line :
         {"\"svce\"<blob>=\"ai.kovra.x\"\n", "0x00000007 <blob>=\"ai.kovra.x\"\n",
          "\"acct\"<blob>=<NULL>\n", "\"acct\"<blob>=\n", "\"acct\" <blob>=\"ai.kovra.x\"\n",
          "\"ACCT\"<blob>=\"ai.kovra.x\"\n", "\"acct\"<blob>=0x61692E6B6F767261  \"ai.kovra.x\"\n",
          "acct<blob>=\"ai.kovra.x\"\n"}) {
        EXPECT_THAT(accountsIn(line), IsEmpty()) << line;
    }
}

TEST(KeychainListing, ReadsUpToTheNextQuoteAndNoFurtherThanTheLine) {
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"ai.kovra.x\"y\"\n"), ElementsAre("ai.kovra.x"));
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"ai.kovra.x\n\"\n"), IsEmpty());
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"ai.kovra.x"), IsEmpty());
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"ai.kovra.x\""), ElementsAre("ai.kovra.x"));
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\""), IsEmpty());
}

TEST(KeychainListing, OfALineCountsTheFirstAttributeAlone) {
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"x\" \"acct\"<blob>=\"ai.kovra.y\"\n"), IsEmpty());
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"ai.kovra.x\" \"acct\"<blob>=\"ai.kovra.y\"\n"),
                ElementsAre("ai.kovra.x"));
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"acct\"<blob>=\"ai.kovra.x\"\n"), IsEmpty());
    EXPECT_THAT(accountsIn("\"acct\"<blob>\"acct\"<blob>=\"ai.kovra.x\"\n"),
                ElementsAre("ai.kovra.x"));
}

TEST(KeychainListing, EmptyLinesAndAMissingLastLineEndChangeNothing) {
    EXPECT_THAT(accountsIn(""), IsEmpty());
    EXPECT_THAT(accountsIn("\n\n\n"), IsEmpty());
    EXPECT_THAT(accountsIn("\n\n" + account("ai.kovra.x") + "\n" + account("ai.kovra.y") + "\n"),
                ElementsAre("ai.kovra.x", "ai.kovra.y"));
}

TEST(KeychainListing, KeepsWhatStandsInTheValue) {
    using namespace std::string_literals;
    EXPECT_THAT(accountsIn("\"acct\"<blob>=\"ai.kovra.\\303\0 é\"\r\n"s),
                ElementsAre("ai.kovra.\\303\0 é"s));
}

double secondsFor(const std::string& listing) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THAT(accountsIn(listing).size(), ::testing::Le(1U));
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count();
}

std::string repeated(const std::string& piece, std::size_t size) {
    std::string text = piece;
    while (text.size() < size) {
        text += text;
    }
    return text;
}

// Listings that would cost the square of their size in a parser that looks back or ahead from
// each hit. Ten megabytes take well under a second each, and a few in an
// emulator; a square would take hours.
TEST(KeychainListing, TakesMegabytesOfTheWorstInOnePass) {
    constexpr std::size_t size = 10'000'000;
    for (const char* piece :
         {"\"acct\"<blob>=\"ai.kovra.x\"", "\"acct\"<blob>=", "\"acct\"<blob>=\"ai.kovra.x\n", "\n",
          "\"", "\"acct\"<blob>=\"a\"\n", "x"}) {
        EXPECT_LT(secondsFor(repeated(piece, size)), 20) << piece;
    }
}

TEST(KeychainListing, ReturnsViewsOfTheListing) {
    const std::string listing = "\"acct\"<blob>=\"ai.kovra.x\"";
    const auto accounts = productAccountsInKeychainListing(listing);
    ASSERT_EQ(accounts.size(), 1U);
    EXPECT_EQ(accounts.begin()->data(), listing.data() + listing.find("ai.kovra.x"));
}

} // namespace
} // namespace kovra
