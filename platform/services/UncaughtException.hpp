#pragma once

#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace platform {

namespace foundation {

class NSObject;

} // namespace foundation

/// An exception that nothing caught.
struct UncaughtException {
    /// The name of an NSException, the class of another object; of a C++ exception its type,
    /// demangled where the program has a demangler, which the cross-built application has not.
    std::string name;
    /// The reason of an NSException, the what() of a std::exception.
    std::optional<std::string> reason;
    /// The call stack, innermost frame first.
    std::vector<std::string> callStackSymbols;
};

using UncaughtExceptionHandler = void (*)(const UncaughtException& exception) noexcept;

/// Sets the handler of exceptions that nothing catches or that would leave our code for the
/// frameworks', C++ and Objective-C ones, on any thread. It is called once, on the thread that
/// threw; then the program aborts. Call this once, on the main thread, after the application object
/// was made, which sets a handler of its own.
void setUncaughtExceptionHandler(UncaughtExceptionHandler handler);

// For the above: what differs between the systems.

/// Inside a catch clause or a terminate handler: the Objective-C object that was thrown, borrowed;
/// null when the exception is another language's or there is none.
[[nodiscard]] foundation::NSObject* caughtObject() noexcept;

/// Sets the terminate handler, which must not return, for Objective-C objects too; there
/// `caughtObject` returns the object. Once, main thread.
void setTerminateHandler(std::terminate_handler handler);

} // namespace platform
