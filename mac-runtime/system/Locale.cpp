// <xlocale.h>, <runetype.h>, <nl_types.h>: the C locale, which a Mac program has until it sets
// another one. All functions with a locale argument get it.

#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/VariableArguments.hpp"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <cwchar>

namespace mac {

namespace {

using Locale = void*;

// _RuneLocale: the character classes and the case mapping.
struct Runes {
    char magic[8];
    char encoding[32];
    void* get;
    void* put;
    std::int32_t invalid;
    std::uint32_t types[256];
    std::int32_t lower[256];
    std::int32_t upper[256];
    std::uint64_t furtherRanges[16];
};

std::uint32_t typeOf(int character) {
    if (character < 0 || character > 127) {
        return 0;
    }
    const auto bit = [character](int (*is)(int), std::uint32_t value) {
        return is(character) != 0 ? value : 0;
    };
    return bit(std::isalpha, 0x100) | bit(std::iscntrl, 0x200) | bit(std::isdigit, 0x400) |
           bit(std::isgraph, 0x800) | bit(std::islower, 0x1000) | bit(std::ispunct, 0x2000) |
           bit(std::isspace, 0x4000) | bit(std::isupper, 0x8000) | bit(std::isxdigit, 0x10000) |
           bit(std::isblank, 0x20000) | bit(std::isprint, 0x40000);
}

int lowerOf(int character) {
    return character >= 0 && character < 128 ? std::tolower(character) : character;
}

int upperOf(int character) {
    return character >= 0 && character < 128 ? std::toupper(character) : character;
}

Runes& runes() {
    static Runes only = [] {
        Runes made{.magic = {'R', 'u', 'n', 'e', 'M', 'a', 'g', 'A'},
                   .encoding = "NONE",
                   .get = nullptr,
                   .put = nullptr,
                   .invalid = 0xfffd,
                   .types = {},
                   .lower = {},
                   .upper = {},
                   .furtherRanges = {}};
        for (int character = 0; character < 256; ++character) {
            made.types[character] = typeOf(character);
            made.lower[character] = lowerOf(character);
            made.upper[character] = upperOf(character);
        }
        return made;
    }();
    return only;
}

// Calls a function that reports an overflow in errno.
template <class Result, class... Arguments>
Result telling(Result (*function)(Arguments...), Arguments... arguments) {
    errno = 0;
    const Result result = function(arguments...);
    if (errno != 0) {
        setDarwinErrno(darwinError(errno));
    }
    return result;
}

} // namespace

extern "C" {

void mac_snprintf_l();
void mac_asprintf_l();
void mac_sscanf();
void mac_sscanf_l();

int mac_snprintf_l_with(char* text, std::size_t size, Locale, const char* format,
                        VariableArguments arguments) {
    return std::vsnprintf(text, size, format, VariableList(arguments).list);
}

int mac_asprintf_l_with(char** text, Locale, const char* format, VariableArguments arguments) {
    return ::vasprintf(text, format, VariableList(arguments).list);
}

int mac_sscanf_with(const char* text, const char* format, VariableArguments arguments) {
    return std::vsscanf(text, format, VariableList(arguments).list);
}

int mac_sscanf_l_with(const char* text, Locale, const char* format, VariableArguments arguments) {
    return std::vsscanf(text, format, VariableList(arguments).list);
}

} // extern "C"

namespace {

namespace darwin {

int maskrune(int character, unsigned long mask) {
    return static_cast<int>(typeOf(character) & mask);
}

int maskrune_l(int character, unsigned long mask, Locale) {
    return maskrune(character, mask);
}

int mb_cur_max_l(Locale) {
    return 1;
}

void freelocale(Locale) {}

// Messages are not translated: without a catalogue the result is the given text.
void* catopen(const char*, int) {
    failWith(DarwinError::noEntry);
    return reinterpret_cast<void*>(-1);
}

const char* catgets(void*, int, int, const char* text) {
    return text;
}

int catclose(void*) {
    return 0;
}

double strtod_l(const char* text, char** end, Locale) {
    return telling(std::strtod, text, end);
}

float strtof_l(const char* text, char** end, Locale) {
    return telling(std::strtof, text, end);
}

// A long double is a double on a Mac with Apple silicon.
double strtold_l(const char* text, char** end, Locale) {
    return telling(std::strtod, text, end);
}

long strtoll_l(const char* text, char** end, int base, Locale) {
    return telling(std::strtol, text, end, base);
}

unsigned long strtoull_l(const char* text, char** end, int base, Locale) {
    return telling(std::strtoul, text, end, base);
}

std::size_t strftime_l(char* text, std::size_t size, const char* format, const tm* parts, Locale) {
    return std::strftime(text, size, format, parts);
}

// Nothing wide is read or written here; libc++ needs the symbols, and creates its wide streams.
[[noreturn]] void wideCharacters() {
    fail("wide characters are not there");
}

// Without a text it tells whether the encoding has shift states. The C locale's has none.
int mbtowc_l(void*, const char* text, std::size_t, Locale) {
    if (text != nullptr) {
        wideCharacters();
    }
    return 0;
}

// libc++ calls this for the end of its wide streams, though nothing else is written to them.
std::size_t wcrtomb_l(char* text, wchar_t character, void*, Locale) {
    if (character != L'\0') {
        wideCharacters();
    }
    *text = '\0';
    return 1;
}

} // namespace darwin

} // namespace

Symbols localeSymbols() {
    static const Symbol symbols[] = {
        {"__DefaultRuneLocale", &runes()},
        {"___maskrune", address(darwin::maskrune)},
        {"___maskrune_l", address(darwin::maskrune_l)},
        {"___tolower", address(lowerOf)},
        {"___toupper", address(upperOf)},
        {"____mb_cur_max_l", address(darwin::mb_cur_max_l)},
        {"_snprintf_l", address(mac_snprintf_l)},
        {"_asprintf_l", address(mac_asprintf_l)},
        {"_sscanf", address(mac_sscanf)},
        {"_sscanf_l", address(mac_sscanf_l)},
        {"_freelocale", address(darwin::freelocale)},
        {"_catopen", address(darwin::catopen)},
        {"_catgets", address(darwin::catgets)},
        {"_catclose", address(darwin::catclose)},
        {"_strtod_l", address(darwin::strtod_l)},
        {"_strtof_l", address(darwin::strtof_l)},
        {"_strtold_l", address(darwin::strtold_l)},
        {"_strtoll_l", address(darwin::strtoll_l)},
        {"_strtoull_l", address(darwin::strtoull_l)},
        {"_strftime_l", address(darwin::strftime_l)},
        {"_mbrlen_l", address(darwin::wideCharacters)},
        {"_mbrtowc_l", address(darwin::wideCharacters)},
        {"_mbsnrtowcs_l", address(darwin::wideCharacters)},
        {"_mbsrtowcs_l", address(darwin::wideCharacters)},
        {"_mbtowc_l", address(darwin::mbtowc_l)},
        {"_wcrtomb_l", address(darwin::wcrtomb_l)},
        {"_wcsnrtombs_l", address(darwin::wideCharacters)},
    };
    return symbols;
}

} // namespace mac
