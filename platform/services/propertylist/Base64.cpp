#include "platform/services/propertylist/Base64.hpp"

#include <cstdint>

namespace platform::propertylist {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

std::string encodeBase64(const PropertyListValue::Data& data) {
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t present = std::min<std::size_t>(3, data.size() - i);
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            group = group << 8U | (j < present ? std::to_integer<std::uint32_t>(data[i + j]) : 0U);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text += j <= present ? alphabet[group >> (18U - 6U * j) & 63U] : '=';
        }
    }
    return text;
}

std::optional<PropertyListValue::Data> decodeBase64(std::string_view text) {
    PropertyListValue::Data data;
    std::uint32_t bits = 0;
    unsigned count = 0;
    bool padded = false;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            continue;
        }
        if (c == '=') {
            padded = true;
            continue;
        }
        const std::size_t digit = alphabet.find(c);
        if (digit == std::string_view::npos || padded) {
            return std::nullopt;
        }
        bits = bits << 6U | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count >= 8) {
            count -= 8;
            data.push_back(static_cast<std::byte>(bits >> count & 0xFFU));
        }
    }
    return data;
}

} // namespace platform::propertylist
