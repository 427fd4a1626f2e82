#include "kovraUninstaller/logging/LogDate.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <mutex>

namespace kovra {

namespace {

constexpr std::time_t secondsADay = 86400;

std::tm localTime(std::time_t moment) {
    static std::once_flag zoneIsKnown;
    std::call_once(zoneIsKnown, ::tzset);
    std::tm local{};
    ::localtime_r(&moment, &local);
    return local;
}

long localOffset(std::time_t moment) {
    return localTime(moment).tm_gmtoff;
}

// The same as localTime, by arithmetic alone.
std::tm civilTime(std::time_t moment, long offset) {
    using namespace std::chrono;
    const sys_seconds shifted{seconds(moment + offset)};
    const auto midnight = floor<days>(shifted);
    const year_month_day date(midnight);
    const hh_mm_ss time(shifted - midnight);
    std::tm local{};
    local.tm_year = static_cast<int>(date.year()) - 1900;
    local.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    local.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    local.tm_hour = static_cast<int>(time.hours().count());
    local.tm_min = static_cast<int>(time.minutes().count());
    local.tm_sec = static_cast<int>(time.seconds().count());
    return local;
}

} // namespace

LocalZone::LocalZone(std::time_t moment) {
    constexpr int daysAhead = 400;
    const std::time_t begin = moment - secondsADay;
    spans[count++] = {begin, localOffset(begin)};
    for (int i = 0; i <= daysAhead; ++i) {
        readDay(begin + i * secondsADay, begin + (i + 1) * secondsADay);
    }
}

// A zone changes once in a day at most, so halving the day finds the second at which it does.
void LocalZone::readDay(std::time_t begin, std::time_t end) {
    const long next = localOffset(end);
    if (next == spans[count - 1].offset || count == spans.size()) {
        return;
    }
    while (end - begin > 1) {
        const std::time_t middle = begin + (end - begin) / 2;
        (localOffset(middle) == next ? end : begin) = middle;
    }
    spans[count++] = {end, next};
}

long LocalZone::offsetAt(std::time_t moment) const {
    std::size_t last = count - 1;
    while (last > 0 && moment < spans[last].begin) {
        --last;
    }
    return spans[last].offset;
}

LogDate::LogDate(std::time_t moment) : LogDate(localTime(moment)) {}

LogDate::LogDate(std::time_t moment, const LocalZone& zone)
    : LogDate(civilTime(moment, zone.offsetAt(moment))) {}

LogDate::LogDate(const std::tm& local) {
    append(local.tm_year + 1900, 4, "-");
    append(local.tm_mon + 1, 2, "-");
    append(local.tm_mday, 2, " ");
    append(local.tm_hour, 2, ":");
    append(local.tm_min, 2, ":");
    append(local.tm_sec, 2, "");
}

// With zeros in front. Not by strftime, which asks for the zone again.
void LogDate::append(int number, std::size_t digits, std::string_view after) {
    std::array<char, 12> buffer{};
    const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    const std::string_view written(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    char* next = characters.data() + length;
    next = std::fill_n(next, digits - std::min(digits, written.size()), '0');
    next = std::ranges::copy(written, next).out;
    next = std::ranges::copy(after, next).out;
    length = static_cast<std::size_t>(next - characters.data());
}

} // namespace kovra
