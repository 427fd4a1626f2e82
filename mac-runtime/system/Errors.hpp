#pragma once

#include <cerrno>

namespace mac {

/// Those of Darwin's error numbers (<sys/errno.h>) that the runtime itself returns.
enum class DarwinError : int {
    notPermitted = 1,
    noEntry = 2,
    noMemory = 12,
    invalidArgument = 22,
    range = 34,
    tooManyLinks = 62,
};

/// Converts Linux's error number to Darwin's. One that Darwin has not ends the process with a
/// message.
[[nodiscard]] int darwinError(int error);

/// Converts Darwin's to Linux's; -1 if Linux has no such error.
[[nodiscard]] int linuxError(int error);

/// Sets the program's errno on this thread.
void setDarwinErrno(int error);

/// Sets the program's errno and returns -1.
int failWith(DarwinError error);

/// Returns the result of a call; if it is -1, converts this thread's errno to the program's.
template <class Result>
Result checked(Result result) {
    if (result == static_cast<Result>(-1)) {
        setDarwinErrno(darwinError(errno));
    }
    return result;
}

/// The same for a call that returns a null pointer on failure.
template <class T>
T* checkedPointer(T* result) {
    if (result == nullptr) {
        setDarwinErrno(darwinError(errno));
    }
    return result;
}

} // namespace mac
