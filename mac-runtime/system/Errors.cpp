#include "system/Errors.hpp"

#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"

#include <cstdio>
#include <cstring>
#include <string>

// Darwin's <sys/errno.h>; strerror_r(3): an unknown number gives "Unknown error: N" and EINVAL; a
// text that does not fit is truncated and gives ERANGE.

namespace mac {

namespace {

thread_local int programsErrno = 0;

// Up to 34 both systems agree, except for 11, which is EDEADLK on a Mac.
constexpr int lastSameOnBoth = 34;
constexpr int lastOfDarwin = 107;

struct Pair {
    int darwin, ofLinux;
};

// Where Darwin has two errors for one of Linux's, the first of them is the translation.
constexpr Pair pairs[] = {
    {11, EDEADLK},      {35, EAGAIN},          {36, EINPROGRESS},      {37, EALREADY},
    {38, ENOTSOCK},     {39, EDESTADDRREQ},    {40, EMSGSIZE},         {41, EPROTOTYPE},
    {42, ENOPROTOOPT},  {43, EPROTONOSUPPORT}, {44, ESOCKTNOSUPPORT},  {45, ENOTSUP},
    {46, EPFNOSUPPORT}, {47, EAFNOSUPPORT},    {48, EADDRINUSE},       {49, EADDRNOTAVAIL},
    {50, ENETDOWN},     {51, ENETUNREACH},     {52, ENETRESET},        {53, ECONNABORTED},
    {54, ECONNRESET},   {55, ENOBUFS},         {56, EISCONN},          {57, ENOTCONN},
    {58, ESHUTDOWN},    {59, ETOOMANYREFS},    {60, ETIMEDOUT},        {61, ECONNREFUSED},
    {62, ELOOP},        {63, ENAMETOOLONG},    {64, EHOSTDOWN},        {65, EHOSTUNREACH},
    {66, ENOTEMPTY},    {68, EUSERS},          {69, EDQUOT},           {70, ESTALE},
    {71, EREMOTE},      {77, ENOLCK},          {78, ENOSYS},           {84, EOVERFLOW},
    {89, ECANCELED},    {90, EIDRM},           {91, ENOMSG},           {92, EILSEQ},
    {93, ENODATA},      {94, EBADMSG},         {95, EMULTIHOP},        {96, ENODATA},
    {97, ENOLINK},      {98, ENOSR},           {99, ENOSTR},           {100, EPROTO},
    {101, ETIME},       {102, EOPNOTSUPP},     {104, ENOTRECOVERABLE}, {105, EOWNERDEAD},
};

bool isSameOnBoth(int error) {
    return error <= lastSameOnBoth && error != 11;
}

} // namespace

int darwinError(int error) {
    if (isSameOnBoth(error)) {
        return error;
    }
    for (const auto& [darwin, ofLinux] : pairs) {
        if (ofLinux == error) {
            return darwin;
        }
    }
    fail("a Mac has no error for Linux's %d, %s", error, std::strerror(error));
}

int linuxError(int error) {
    if (isSameOnBoth(error)) {
        return error;
    }
    for (const auto& [darwin, ofLinux] : pairs) {
        if (darwin == error) {
            return ofLinux;
        }
    }
    return -1;
}

void setDarwinErrno(int error) {
    programsErrno = error;
}

int failWith(DarwinError error) {
    setDarwinErrno(static_cast<int>(error));
    return -1;
}

namespace {

namespace darwin {

int* error() {
    return &programsErrno;
}

int strerror_r(int error, char* buffer, std::size_t size) {
    const bool isKnown = error >= 0 && error <= lastOfDarwin;
    const int ours = isKnown ? linuxError(error) : -1;
    const std::string text =
        ours >= 0 ? ::strerrordesc_np(ours)
                  : (isKnown ? "Error: " : "Unknown error: ") + std::to_string(error);
    std::snprintf(buffer, size, "%s", text.c_str());
    if (text.size() >= size) {
        return static_cast<int>(DarwinError::range);
    }
    return isKnown ? 0 : static_cast<int>(DarwinError::invalidArgument);
}

char* strerror(int error) {
    static thread_local char text[128];
    strerror_r(error, &text[0], sizeof text);
    return &text[0];
}

void perror(const char* prefix) {
    std::fprintf(stderr, "%s: %s\n", prefix, strerror(programsErrno));
}

} // namespace darwin

} // namespace

Symbols errorSymbols() {
    static const Symbol symbols[] = {
        {"___error", address(darwin::error)},
        {"_strerror", address(darwin::strerror)},
        {"_strerror_r", address(darwin::strerror_r)},
        {"_perror", address(darwin::perror)},
    };
    return symbols;
}

} // namespace mac
