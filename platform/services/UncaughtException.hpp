#pragma once

#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace platform {

namespace foundation {

class NSObject;

} // namespace foundation

/// What is known of an exception that nobody caught.
struct UncaughtException {
    /// Its name; of a C++ exception, its type: as people write it, or as the compiler does in a
    /// program that leaves out what translates it, as the cross-built application does.
    std::string name;
    /// Its reason; of a C++ exception, what it says of itself.
    std::optional<std::string> reason;
    /// The calls that led to it, innermost first.
    std::vector<std::string> callStackSymbols;
};

using UncaughtExceptionHandler = void (*)(const UncaughtException& exception) noexcept;

/// What is to hear of an exception that nobody caught or that is about to leave our code for the
/// frameworks', from whichever language, on whichever thread. The handler is called once, on the
/// thread that threw; when it returns, the program aborts. Once, on the main thread, when the
/// application object exists, which installs a handler of its own.
void setUncaughtExceptionHandler(UncaughtExceptionHandler handler);

// What differs between the systems, for the above.

/// Inside a catch clause or a terminate handler: the Objective-C object that was thrown; null when
/// the exception is another language's or there is none. Borrowed.
[[nodiscard]] foundation::NSObject* caughtObject() noexcept;

/// Has the handler, which does not return, called where an exception meets a function that may not
/// throw: an Objective-C object too, which `caughtObject` gives there. Once, main thread.
void setTerminateHandler(std::terminate_handler handler);

} // namespace platform
