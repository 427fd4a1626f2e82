#include "loader/Environment.hpp"
#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"

#include <cstdlib>
#include <ctime>
#include <unistd.h>

// clock_gettime(3) with <_time.h>'s clocks, nanosleep(2), tzset(3). The time zone is that of the
// program's TZ, not of this process's.

namespace mac {

namespace {

clockid_t linuxClock(int darwin) {
    switch (darwin) {
    case 0: return CLOCK_REALTIME;
    case 4: return CLOCK_MONOTONIC_RAW;
    case 6: return CLOCK_BOOTTIME;  // CLOCK_MONOTONIC, which includes sleep on a Mac
    case 8: return CLOCK_MONOTONIC; // CLOCK_UPTIME_RAW
    case 12: return CLOCK_PROCESS_CPUTIME_ID;
    case 16: return CLOCK_THREAD_CPUTIME_ID;
    default: fail("clock_gettime of the clock %d, which is not known", darwin);
    }
}

namespace darwin {

int clock_gettime(int clock, timespec* time) {
    return checked(::clock_gettime(linuxClock(clock), time));
}

int nanosleep(const timespec* time, timespec* left) {
    return checked(::nanosleep(time, left));
}

time_t time(time_t* now) {
    return ::time(now);
}

void tzset() {
    if (const char* zone = programVariable("TZ")) {
        ::setenv("TZ", zone, 1);
    } else {
        ::unsetenv("TZ");
    }
    ::tzset();
}

tm* localtime_r(const time_t* seconds, tm* parts) {
    return checkedPointer(::localtime_r(seconds, parts));
}

std::size_t strftime(char* text, std::size_t size, const char* format, const tm* parts) {
    return std::strftime(text, size, format, parts);
}

} // namespace darwin

} // namespace

Symbols timeSymbols() {
    static const Symbol symbols[] = {
        {"_clock_gettime", address(darwin::clock_gettime)},
        {"_nanosleep", address(darwin::nanosleep)},
        {"_time", address(darwin::time)},
        {"_tzset", address(darwin::tzset)},
        {"_localtime_r", address(darwin::localtime_r)},
        {"_strftime", address(darwin::strftime)},
    };
    return symbols;
}

} // namespace mac
