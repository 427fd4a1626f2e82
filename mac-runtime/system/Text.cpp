#include "loader/Symbols.hpp"
#include "system/Errors.hpp"

#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

// <stdio.h>. On a Mac the variable arguments of a call all lie on the stack, in words of eight
// bytes, and a va_list is their address ("Writing ARM64 code for Apple platforms"). A stream is this
// system's own; the program only hands it on.

namespace mac {

namespace {

using Arguments = const std::uint64_t*;

// The same as this system's va_list (AAPCS64), all registers used up.
class List {
  public:
    explicit List(Arguments arguments) {
        const struct {
            const void* stack;
            void* generalTop;
            void* vectorTop;
            int generalOffset, vectorOffset;
        } parts{arguments, nullptr, nullptr, 0, 0};
        static_assert(sizeof parts == sizeof(std::va_list));
        std::memcpy(&list, &parts, sizeof parts);
    }

    std::va_list list;
};

int checkedEnd(int result) {
    return result == EOF ? checked(result) : result;
}

} // namespace

extern "C" {

void mac_printf();
void mac_fprintf();
void mac_snprintf();

int mac_printf_with(const char* format, Arguments arguments) {
    return checkedEnd(std::vprintf(format, List(arguments).list));
}

int mac_fprintf_with(FILE* stream, const char* format, Arguments arguments) {
    return checkedEnd(std::vfprintf(stream, format, List(arguments).list));
}

int mac_snprintf_with(char* text, std::size_t size, const char* format, Arguments arguments) {
    return checkedEnd(std::vsnprintf(text, size, format, List(arguments).list));
}

} // extern "C"

namespace {

namespace darwin {

int fputs(const char* text, FILE* stream) {
    return checkedEnd(std::fputs(text, stream));
}

int fputc(int character, FILE* stream) {
    return checkedEnd(std::fputc(character, stream));
}

std::size_t fwrite(const void* items, std::size_t size, std::size_t count, FILE* stream) {
    const std::size_t written = std::fwrite(items, size, count, stream);
    if (written < count) {
        setDarwinErrno(darwinError(errno));
    }
    return written;
}

int fflush(FILE* stream) {
    return checkedEnd(std::fflush(stream));
}

// <math.h>'s, which gives two doubles in registers.
struct SineAndCosine {
    double sine, cosine;
};

SineAndCosine sincos_stret(double angle) {
    return {std::sin(angle), std::cos(angle)};
}

FILE* standardOutput = stdout;
FILE* standardError = stderr;

} // namespace darwin

} // namespace

Symbols textSymbols() {
    static const Symbol symbols[] = {
        {"_printf", address(mac_printf)},
        {"_fprintf", address(mac_fprintf)},
        {"_snprintf", address(mac_snprintf)},
        {"_vprintf", address(mac_printf_with)},
        {"_vfprintf", address(mac_fprintf_with)},
        {"_vsnprintf", address(mac_snprintf_with)},
        {"_fputs", address(darwin::fputs)},
        {"_fputc", address(darwin::fputc)},
        {"_fwrite", address(darwin::fwrite)},
        {"_fflush", address(darwin::fflush)},
        {"___sincos_stret", address(darwin::sincos_stret)},
        {"___stdoutp", &darwin::standardOutput},
        {"___stderrp", &darwin::standardError},
    };
    return symbols;
}

} // namespace mac
