#pragma once

#include <cerrno>

namespace mac {

/// Error numbers as Darwin's <sys/errno.h> has them, those that the runtime itself gives.
enum class DarwinError : int {
    notPermitted = 1,
    noEntry = 2,
    noMemory = 12,
    invalidArgument = 22,
    range = 34,
    tooManyLinks = 62,
};

/// This system's error number as Darwin has it. One that Darwin has not ends the process by name.
[[nodiscard]] int darwinError(int error);

/// The other way round; -1 where Linux has no such error.
[[nodiscard]] int linuxError(int error);

/// Sets the program's errno on this thread.
void setDarwinErrno(int error);

/// Sets the program's errno and gives -1.
int failWith(DarwinError error);

/// A call's result; where it is -1, this thread's errno becomes the program's.
template <class Result>
Result checked(Result result) {
    if (result == static_cast<Result>(-1)) {
        setDarwinErrno(darwinError(errno));
    }
    return result;
}

/// The same for a pointer that is null.
template <class T>
T* checkedPointer(T* result) {
    if (result == nullptr) {
        setDarwinErrno(darwinError(errno));
    }
    return result;
}

} // namespace mac
