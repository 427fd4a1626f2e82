#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <syslog.h>
#include <vector>

// os_log(3). The compiler encodes a call's arguments into a buffer (clang, "OSLog.h"): a summary
// byte, the number of arguments, then for each one a byte of type and flags, the size, and the
// bytes; of a string, the pointer. By os_log_create(3) numbers are public and strings private
// unless the format says otherwise. The log shows "<private>" for a private argument.

namespace mac {

namespace {

struct Log {
    std::string subsystem, category;
};

enum class Kind : std::uint8_t { scalar = 0, count = 1, text = 2 };
constexpr std::uint8_t isPrivate = 1;
constexpr std::uint8_t isPublic = 2;

struct Argument {
    Kind kind;
    std::uint8_t flags;
    std::uint64_t value;
};

std::vector<Argument> decoded(const std::uint8_t* buffer, std::size_t size) {
    std::vector<Argument> arguments;
    const std::uint8_t* end = buffer + size;
    const unsigned count = buffer[1];
    const std::uint8_t* place = buffer + 2;
    for (unsigned i = 0; i < count; ++i) {
        Argument argument{static_cast<Kind>(place[0] >> 4),
                          static_cast<std::uint8_t>(place[0] & 0xf), 0};
        const unsigned length = place[1];
        const bool isKnown = (argument.kind == Kind::scalar || argument.kind == Kind::text) &&
                             (argument.flags & ~(isPrivate | isPublic)) == 0 &&
                             length <= sizeof argument.value;
        if (!isKnown || place + 2 + length > end) {
            fail("os_log with an argument %#x of %u bytes, which is not known", place[0], length);
        }
        std::memcpy(&argument.value, place + 2, length);
        arguments.push_back(argument);
        place += 2 + length;
    }
    if (place != end) {
        fail("os_log with %td bytes that no argument is in", end - place);
    }
    return arguments;
}

std::string written(const Argument& argument, const std::string& conversion) {
    const bool isText = argument.kind == Kind::text;
    if ((argument.flags & isPrivate) != 0 || (isText && (argument.flags & isPublic) == 0)) {
        return "<private>";
    }
    if (isText) {
        const auto* text = reinterpret_cast<const char*>(argument.value);
        return text == nullptr ? "(null)" : text;
    }
    char number[64];
    std::snprintf(&number[0], sizeof number, ("%" + conversion).c_str(), argument.value);
    return &number[0];
}

// The format is printf's, with privacy such as "{public}" after the percent sign.
std::string composed(std::string_view format, const std::vector<Argument>& arguments) {
    std::string line;
    auto argument = arguments.begin();
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') {
            line += format[i];
            continue;
        }
        if (format.substr(i + 1).starts_with('%')) {
            line += '%';
            ++i;
            continue;
        }
        std::size_t begin = i + 1;
        if (format.substr(begin).starts_with('{')) {
            begin = format.find('}', begin) + 1;
        }
        const std::size_t end = format.find_first_of("sdiuxX", begin);
        if (begin == 0 || end == std::string_view::npos || argument == arguments.end()) {
            fail("os_log with the format \"%.*s\"", static_cast<int>(format.size()), format.data());
        }
        line += written(*argument++, std::string(format.substr(begin, end + 1 - begin)));
        i = end;
    }
    return line;
}

int priority(std::uint8_t type) {
    switch (type) {
    case 0x00: return LOG_NOTICE;
    case 0x01: return LOG_INFO;
    case 0x02: return LOG_DEBUG;
    case 0x10: return LOG_ERR;
    case 0x11: return LOG_CRIT;
    default: fail("os_log of the type %#x, which is not known", type);
    }
}

namespace darwin {

Log* create(const char* subsystem, const char* category) {
    return new Log{subsystem, category};
}

// Messages of the levels info and debug are off unless a profile enables them.
bool isEnabled(const Log*, std::uint8_t type) {
    return priority(type) <= LOG_NOTICE;
}

void error(const void*, const Log* log, std::uint8_t type, const char* format,
           const std::uint8_t* buffer, std::uint32_t size) {
    const std::string line = composed(format, decoded(buffer, size));
    ::syslog(LOG_USER | priority(type), "%s:%s: %s", log->subsystem.c_str(), log->category.c_str(),
             line.c_str());
}

} // namespace darwin

} // namespace

Symbols systemLogSymbols() {
    static const Symbol symbols[] = {
        {"_os_log_create", address(darwin::create)},
        {"_os_log_type_enabled", address(darwin::isEnabled)},
        {"__os_log_error_impl", address(darwin::error)},
    };
    return symbols;
}

} // namespace mac
