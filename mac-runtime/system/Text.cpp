#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/VariableArguments.hpp"

#include <cmath>
#include <cstdio>

// <stdio.h>, <math.h>. A stream is this system's own: it is opaque to the program.

namespace mac {

namespace {

int checkedEnd(int result) {
    return result == EOF ? checked(result) : result;
}

} // namespace

extern "C" {

void mac_printf();
void mac_fprintf();
void mac_snprintf();

int mac_printf_with(const char* format, VariableArguments arguments) {
    return checkedEnd(std::vprintf(format, VariableList(arguments).list));
}

int mac_fprintf_with(FILE* stream, const char* format, VariableArguments arguments) {
    return checkedEnd(std::vfprintf(stream, format, VariableList(arguments).list));
}

int mac_snprintf_with(char* text, std::size_t size, const char* format,
                      VariableArguments arguments) {
    return checkedEnd(std::vsnprintf(text, size, format, VariableList(arguments).list));
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

FILE* fopen(const char* path, const char* mode) {
    return checkedPointer(std::fopen(path, mode));
}

int fclose(FILE* stream) {
    return checkedEnd(std::fclose(stream));
}

int fseeko(FILE* stream, off_t offset, int whence) {
    return checked(::fseeko(stream, offset, whence));
}

off_t ftello(FILE* stream) {
    return checked(::ftello(stream));
}

int puts(const char* text) {
    return checkedEnd(std::puts(text));
}

int fflush(FILE* stream) {
    return checkedEnd(std::fflush(stream));
}

// From <math.h>; it returns two doubles in registers.
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
        {"_fopen", address(darwin::fopen)},
        {"_fclose", address(darwin::fclose)},
        {"_fseek", address(darwin::fseeko)},
        {"_fseeko", address(darwin::fseeko)},
        {"_ftello", address(darwin::ftello)},
        {"_puts", address(darwin::puts)},
        {"_fflush", address(darwin::fflush)},
        {"___sincos_stret", address(darwin::sincos_stret)},
        {"___stdoutp", &darwin::standardOutput},
        {"___stderrp", &darwin::standardError},
    };
    return symbols;
}

} // namespace mac
