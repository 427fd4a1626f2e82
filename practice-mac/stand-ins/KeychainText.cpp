#include "practice-mac/stand-ins/KeychainText.hpp"

#include "practice-mac/stand-ins/Plist.hpp"

#include <algorithm>

namespace practice {

namespace {

bool isPlain(char byte) {
    return byte >= 0x20 && byte <= 0x7e && byte != '\\';
}

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string printed = "0x";
    for (const char byte : bytes) {
        printed += digits[static_cast<unsigned char>(byte) >> 4];
        printed += digits[static_cast<unsigned char>(byte) & 15];
    }
    return printed;
}

/// The bytes between quotes, those that are not plain as a backslash and three octal digits. A
/// quote inside stays as it is.
std::string quoted(std::string_view bytes) {
    std::string printed = "\"";
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (isPlain(byte)) {
            printed += byte;
        } else {
            printed += '\\';
            printed += static_cast<char>('0' + (value >> 6));
            printed += static_cast<char>('0' + (value >> 3 & 7));
            printed += static_cast<char>('0' + (value & 7));
        }
    }
    return printed + '"';
}

std::string line(std::string_view head, const std::optional<std::string>& value) {
    return "    " + std::string(head) + "=" + blobText(value) + "\n";
}

std::string dateLine(std::string_view name, plist_t item) {
    const std::string date = attribute(item, "date").value_or("20240102030405Z");
    return line("\"" + std::string(name) + "\"<timedate>", date + '\0');
}

} // namespace

std::optional<std::string> attribute(plist_t item, const char* name) {
    plist_t node = itemAt(item, name);
    if (node != nullptr && plist_get_node_type(node) == PLIST_DATA) {
        return bytesOf(node);
    }
    return text(node);
}

std::string blobText(const std::optional<std::string>& value) {
    if (!value) {
        return "<NULL>";
    }
    if (value->empty()) {
        return "";
    }
    if (std::all_of(value->begin(), value->end(), isPlain)) {
        return quoted(*value);
    }
    const bool some = std::any_of(value->begin(), value->end(), isPlain);
    return hexadecimal(*value) + (some ? "  " + quoted(*value) : " ");
}

std::string entryText(std::string_view keychain, plist_t item) {
    const std::string kind = attribute(item, "class").value_or("genp");
    const bool internet = kind == "inet";
    std::string entry = "keychain: \"" + std::string(keychain) + "\"\nversion: 512\n";
    entry += "class: " + (kind == "certificate" ? "0x80001000 " : quoted(kind)) + "\nattributes:\n";
    if (kind == "certificate") {
        entry += line("\"alis\"<blob>", attribute(item, "label"));
        entry += line("\"labl\"<blob>", attribute(item, "label"));
        return entry + line("\"subj\"<blob>", attribute(item, "account"));
    }
    const std::optional<std::string> none;
    entry += line("0x00000007 <blob>", attribute(item, "label"));
    entry += line("0x00000008 <blob>", none);
    entry += line("\"acct\"<blob>", attribute(item, "account"));
    if (internet) {
        entry += line("\"atyp\"<blob>", "form");
    }
    entry += dateLine("cdat", item);
    entry += "    \"crtr\"<uint32>=<NULL>\n    \"cusi\"<sint32>=<NULL>\n";
    entry += line("\"desc\"<blob>", attribute(item, "description"));
    if (!internet) {
        entry += line("\"gena\"<blob>", none);
    }
    entry += line("\"icmt\"<blob>", attribute(item, "comment"));
    entry += "    \"invi\"<sint32>=<NULL>\n";
    entry += dateLine("mdat", item);
    entry += "    \"nega\"<sint32>=<NULL>\n";
    if (internet) {
        entry += line("\"path\"<blob>", "/") + "    \"port\"<uint32>=0x000001BB \n";
        entry += line("\"prot\"<blob>", none) + "    \"ptcl\"<uint32>=\"htps\"\n";
    } else {
        entry += line("\"prot\"<blob>", none);
    }
    entry += "    \"scrp\"<sint32>=<NULL>\n";
    if (internet) {
        entry += line("\"sdmn\"<blob>", none) + line("\"srvr\"<blob>", attribute(item, "service"));
    } else {
        entry += line("\"svce\"<blob>", attribute(item, "service"));
    }
    return entry + "    \"type\"<uint32>=<NULL>\n";
}

} // namespace practice
