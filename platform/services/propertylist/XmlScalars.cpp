#include "platform/services/propertylist/PropertyListForms.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace platform::propertylist {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

using namespace std::chrono;

constexpr sys_days referenceDay = year{2001} / 1 / 1;

bool hasDateForm(std::string_view text) {
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    return std::ranges::equal(text, form, [](char c, char wanted) {
        return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
    });
}

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

std::optional<std::string> formatDate(PropertyListValue::Date date) {
    // Beyond year 9999, and far from overflowing std::chrono::seconds.
    constexpr double limit = 1e12;
    if (!(std::abs(date.secondsSinceReferenceDate) < limit)) {
        return std::nullopt;
    }
    const seconds sinceReference(
        static_cast<long long>(std::floor(date.secondsSinceReferenceDate)));
    const sys_seconds moment = referenceDay + sinceReference;
    const sys_days day = floor<days>(moment);
    const year_month_day calendar(day);
    const int yearNumber = static_cast<int>(calendar.year());
    if (moment < sys_days(year{0} / 1 / 1) || moment >= sys_days(year{10000} / 1 / 1)) {
        return std::nullopt;
    }
    const hh_mm_ss time(moment - day);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", yearNumber,
                  static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

std::optional<PropertyListValue::Date> parseDate(std::string_view text) {
    if (!hasDateForm(text)) {
        return std::nullopt;
    }
    const auto number = [&](std::size_t at, std::size_t length) {
        int value = 0;
        std::from_chars(text.data() + at, text.data() + at + length, value);
        return value;
    };
    const year_month_day calendar = year{number(0, 4)} /
                                    month{static_cast<unsigned>(number(5, 2))} /
                                    day{static_cast<unsigned>(number(8, 2))};
    const hours hour(number(11, 2));
    const minutes minute(number(14, 2));
    const seconds second(number(17, 2));
    if (!calendar.ok() || hour >= days(1) || minute >= hours(1) || second > minutes(1)) {
        return std::nullopt;
    }
    const seconds sinceReference = sys_days(calendar) - referenceDay + hour + minute + second;
    return PropertyListValue::Date{static_cast<double>(sinceReference.count())};
}

} // namespace platform::propertylist
