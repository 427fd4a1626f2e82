#include "bench/Dumps.hpp"

#include <array>
#include <random>
#include <string_view>

namespace bench {

namespace {

constexpr std::string_view keychain =
    "keychain: \"/Users/sam/Library/Keychains/login.keychain-db\"\nversion: 512\n";
constexpr std::string_view date = "0x32303135303132333037343035395A00  \"20150123074059Z\\000\"";

std::string attribute(std::string_view name, std::string_view type, std::string_view value) {
    std::string line("    ");
    line.append(name).append("<").append(type).append(">=").append(value).append("\n");
    return line;
}

std::string quoted(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

std::string commonAttributes(std::string_view label, std::string_view account) {
    return attribute("0x00000007 ", "blob", quoted(label)) +
           attribute("0x00000008 ", "blob", "<NULL>") + attribute("\"acct\"", "blob", account) +
           attribute("\"cdat\"", "timedate", date) + attribute("\"crtr\"", "uint32", "<NULL>") +
           attribute("\"cusi\"", "sint32", "<NULL>") + attribute("\"desc\"", "blob", "<NULL>");
}

std::string signInItem(std::string_view label, std::string_view account) {
    return std::string(keychain) + "class: \"genp\"\nattributes:\n" +
           commonAttributes(label, account) + attribute("\"gena\"", "blob", "<NULL>") +
           attribute("\"icmt\"", "blob", "<NULL>") + attribute("\"invi\"", "sint32", "<NULL>") +
           attribute("\"mdat\"", "timedate", date) + attribute("\"nega\"", "sint32", "<NULL>") +
           attribute("\"prot\"", "blob", "<NULL>") + attribute("\"scrp\"", "sint32", "<NULL>") +
           attribute("\"svce\"", "blob", quoted(label)) + attribute("\"type\"", "uint32", "<NULL>");
}

std::string webItem(std::string_view label, std::string_view account) {
    return std::string(keychain) + "class: \"inet\"\nattributes:\n" +
           commonAttributes(label, account) + attribute("\"atyp\"", "blob", "\"form\"") +
           attribute("\"icmt\"", "blob", "\"default\"") +
           attribute("\"invi\"", "sint32", "<NULL>") + attribute("\"mdat\"", "timedate", date) +
           attribute("\"nega\"", "sint32", "<NULL>") + attribute("\"path\"", "blob", "\"/\"") +
           attribute("\"port\"", "uint32", "0x000001BB ") +
           attribute("\"prot\"", "blob", "<NULL>") + attribute("\"ptcl\"", "uint32", "\"htps\"") +
           attribute("\"scrp\"", "sint32", "<NULL>") + attribute("\"sdmn\"", "blob", "<NULL>") +
           attribute("\"srvr\"", "blob", quoted(label)) + attribute("\"type\"", "uint32", "<NULL>");
}

std::string certificate(std::string_view label) {
    return std::string(keychain) + "class: 0x80001000 \nattributes:\n" +
           attribute("\"alis\"", "blob", quoted(label)) +
           attribute("\"cenc\"", "uint32", "0x00000003 ") +
           attribute("\"ctyp\"", "uint32", "0x00000001 ") +
           attribute(
               "\"hpky\"", "blob",
               "0x5C8F1A2B3C4D5E6F708192A3B4C5D6E7F8091A2B  "
               "\"\\\\\\217\\032+<M^op\\201\\222\\243\\264\\305\\326\\347\\370\\011\\032+\"") +
           attribute("\"labl\"", "blob", quoted(label));
}

std::string account(std::mt19937& random) {
    static constexpr std::array<std::string_view, 4> ours{
        "ai.kovra.auth.session", "ai.kovra.auth.pendingPKCE", "ai.kovra.device", "ai.kovra.sync"};
    switch (random() % 50) {
    case 0: return quoted(ours[random() % ours.size()]);
    case 1: return "<NULL>";
    case 2: return "0x4AC3B672672E  \"J\\303\\266rg.\"";
    default: return quoted("user" + std::to_string(random() % 1'000'000) + "@example.org");
    }
}

} // namespace

std::string keychainDump(std::size_t size) {
    constexpr std::size_t longestItem = 2000;
    std::mt19937 random(20250314);
    std::string dump;
    dump.reserve(size + longestItem);
    while (dump.size() < size) {
        const std::string label = "service-" + std::to_string(random() % 100'000) + ".example.org";
        switch (random() % 8) {
        case 0: dump += certificate(label); break;
        case 1:
        case 2: dump += webItem(label, account(random)); break;
        default: dump += signInItem(label, account(random));
        }
    }
    return dump;
}

std::string launchServicesDump() {
    constexpr int records = 12'784;
    constexpr int apart = 2556;
    std::string dump;
    for (int record = 0; record < records; ++record) {
        const std::string number = std::to_string(record);
        const std::string bundle = record % apart == 1
                                       ? "/Library/Input Methods/" + number + "/kovraInput.app"
                                       : "/Applications/Package " + number + ".app";
        dump +=
            std::string(80, '-') + "\nbundle id:                  Package (0x1" + number + ")\n";
        dump += "path:                       " + bundle + " (0x" + number + ")\n";
        for (int line = 0; line < 27; ++line) {
            dump += "    claimed kinds:          key = \"public.kinds.of.work." + number +
                    "\"; rank = Alternate; knows\n";
        }
    }
    return dump;
}

} // namespace bench
