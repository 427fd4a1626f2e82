#include "practice-mac/stand-ins/DefaultsText.hpp"

#include "practice-mac/stand-ins/Plist.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <ctime>

namespace practice {

namespace {

constexpr time_t referenceDate = 978307200;

std::string indented(int depth) {
    return std::string(static_cast<size_t>(depth) * 4, ' ');
}

std::string quotedUnlessPlain(const std::string& value) {
    const bool plain = !value.empty() && std::all_of(value.begin(), value.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0;
    });
    if (plain) {
        return value;
    }
    std::string quoted = "\"";
    for (const char c : value) {
        quoted += c == '"' || c == '\\' ? std::string{'\\', c} : std::string{c};
    }
    return quoted + '"';
}

std::string dateText(plist_t node) {
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    const time_t instant = referenceDate + seconds;
    tm parts{};
    gmtime_r(&instant, &parts);
    std::array<char, 32> buffer{};
    strftime(buffer.data(), buffer.size(), "%Y-%m-%d %H:%M:%S +0000", &parts);
    return buffer.data();
}

std::string dataText(plist_t node) {
    constexpr std::string_view digits = "0123456789abcdef";
    const std::string bytes = bytesOf(node);
    std::string printed = "{length = " + std::to_string(bytes.size()) + ", bytes = 0x";
    for (const char byte : bytes) {
        printed += digits[static_cast<unsigned char>(byte) >> 4];
        printed += digits[static_cast<unsigned char>(byte) & 15];
    }
    return printed + '}';
}

/// An integer's digits. The library has no signed access to an integer; its XML has them right.
std::string integerText(plist_t node) {
    const std::string xml = plistXml(node);
    const size_t end = xml.rfind("</", xml.rfind("</plist>") - 1);
    const size_t begin = xml.rfind('>', end) + 1;
    return xml.substr(begin, end - begin);
}

/// The shortest digits that give the same number again.
std::string realText(plist_t node) {
    double value = 0;
    plist_get_real_val(node, &value);
    std::array<char, 32> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return error == std::errc() ? std::string(buffer.data(), end) : std::string();
}

std::string arrayText(plist_t node, int depth) {
    std::string printed = "(\n";
    const std::vector<plist_t> items = elements(node);
    for (size_t index = 0; index < items.size(); ++index) {
        printed += indented(depth + 1) + defaultsText(items[index], depth + 1);
        printed += index + 1 < items.size() ? ",\n" : "\n";
    }
    return printed + indented(depth) + ')';
}

std::string dictionaryText(plist_t node, int depth) {
    std::string printed = "{\n";
    std::vector<Member> entries = members(node);
    std::sort(entries.begin(), entries.end(),
              [](const Member& one, const Member& other) { return one.key < other.key; });
    for (const auto& [key, value] : entries) {
        printed += indented(depth + 1) + quotedUnlessPlain(key) + " = ";
        printed += defaultsText(value, depth + 1) + ";\n";
    }
    return printed + indented(depth) + '}';
}

} // namespace

std::string defaultsText(plist_t node, int depth) {
    switch (plist_get_node_type(node)) {
    case PLIST_STRING: {
        const std::string value = text(node).value_or("");
        return depth == 0 ? value : quotedUnlessPlain(value);
    }
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0 ? "1" : "0";
    }
    case PLIST_UINT: return integerText(node);
    case PLIST_REAL: return depth == 0 ? realText(node) : '"' + realText(node) + '"';
    case PLIST_DATE: return depth == 0 ? dateText(node) : '"' + dateText(node) + '"';
    case PLIST_DATA: return dataText(node);
    case PLIST_ARRAY: return arrayText(node, depth);
    case PLIST_DICT: return dictionaryText(node, depth);
    default: return "";
    }
}

} // namespace practice
