#include "kovraUninstaller/logging/LogLine.hpp"

#include <charconv>
#include <chrono>
#include <mutex>

namespace kovra {

namespace {

constexpr std::time_t secondsADay = 86400;

// With zeros in front. Not by strftime, which takes the C library's lock.
void appendNumber(LogDate& date, int number, std::size_t digits) {
    std::array<char, 12> buffer{};
    const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    const std::string_view written(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    for (std::size_t i = written.size(); i < digits; ++i) {
        date.append("0");
    }
    date.append(written);
}

} // namespace

LocalZone::LocalZone(std::time_t moment) {
    constexpr int daysAhead = 400;
    const std::time_t begin = moment - secondsADay;
    spans_[count_++] = {begin, localOffset(begin)};
    for (int i = 0; i <= daysAhead; ++i) {
        readDay(begin + i * secondsADay, begin + (i + 1) * secondsADay);
    }
}

const LocalZone& LocalZone::ofProcess() {
    static const LocalZone only(std::time(nullptr));
    return only;
}

// A zone changes at most once a day, so halving the day finds the second at which it does.
void LocalZone::readDay(std::time_t begin, std::time_t end) {
    const long next = localOffset(end);
    if (next == spans_[count_ - 1].offset || count_ == spans_.size()) {
        return;
    }
    while (end - begin > 1) {
        const std::time_t middle = begin + (end - begin) / 2;
        (localOffset(middle) == next ? end : begin) = middle;
    }
    spans_[count_++] = {end, next};
}

long LocalZone::offsetAt(std::time_t moment) const {
    std::size_t last = count_ - 1;
    while (last > 0 && moment < spans_[last].begin) {
        --last;
    }
    return spans_[last].offset;
}

long localOffset(std::time_t moment) {
    static std::once_flag zoneIsKnown;
    std::call_once(zoneIsKnown, ::tzset);
    std::tm local{};
    ::localtime_r(&moment, &local);
    return local.tm_gmtoff;
}

LogDate logDate(std::time_t moment, long offset) {
    using namespace std::chrono;
    const sys_seconds local{seconds(moment + offset)};
    const auto midnight = floor<days>(local);
    const year_month_day day(midnight);
    const hh_mm_ss time(local - midnight);
    const auto number = [](auto value) { return static_cast<int>(value); };
    LogDate date;
    appendNumber(date, number(day.year()), 4);
    date.append("-");
    appendNumber(date, number(static_cast<unsigned>(day.month())), 2);
    date.append("-");
    appendNumber(date, number(static_cast<unsigned>(day.day())), 2);
    date.append(" ");
    appendNumber(date, number(time.hours().count()), 2);
    date.append(":");
    appendNumber(date, number(time.minutes().count()), 2);
    date.append(":");
    appendNumber(date, number(time.seconds().count()), 2);
    return date;
}

LogLineStart logLineStart(std::time_t moment, const LocalZone& zone) {
    LogLineStart start;
    start.append("[");
    start.append(logDate(moment, zone.offsetAt(moment)).text());
    start.append("] ");
    return start;
}

std::string logLine(std::string_view message) {
    const LogLineStart start = logLineStart(std::time(nullptr), LocalZone::ofProcess());
    std::string line(start.text());
    return line.append(message).append("\n");
}

} // namespace kovra
