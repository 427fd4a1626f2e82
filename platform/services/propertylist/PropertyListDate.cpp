#include "platform/services/propertylist/PropertyListDate.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace platform::propertylist {

namespace {

using namespace std::chrono;

constexpr sys_days referenceDay = year{2001} / 1 / 1;

bool hasDateForm(std::string_view text) {
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    return std::ranges::equal(text, form, [](char c, char wanted) {
        return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
    });
}

} // namespace

std::optional<std::string> formatDate(PropertyListValue::Date date) {
    // Far outside the calendar's years, and well inside what a duration holds.
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
