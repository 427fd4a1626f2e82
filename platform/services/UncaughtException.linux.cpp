#include "platform/services/UncaughtException.hpp"

#include "platform/foundation/NSObject.hpp"

#include <cstdint>
#include <cxxabi.h>
#include <string_view>
#include <unwind.h>

namespace platform {

namespace {

// The C++ runtime keeps the caught exceptions in a list. The last member of each entry is the
// unwinder's header, which the exceptions of all languages have.
struct CaughtException {
    alignas(16) char cppPart[80];
    _Unwind_Exception header;
};

struct ExceptionGlobals {
    CaughtException* caught;
};

// What the Objective-C runtime throws.
struct ThrownObject {
    _Unwind_Exception header;
    foundation::NSObject* object;
};

constexpr std::uint64_t exceptionClass(std::string_view name) {
    std::uint64_t value = 0;
    for (const char character : name) {
        value = value << 8 | static_cast<unsigned char>(character);
    }
    return value;
}

} // namespace

foundation::NSObject* caughtObject() noexcept {
    static_assert(sizeof(void*) == 8 && sizeof(_Unwind_Exception) == 32,
                  "The structures above have the layout of 64-bit systems.");
    auto* globals = reinterpret_cast<ExceptionGlobals*>(abi::__cxa_get_globals());
    if (globals->caught == nullptr ||
        globals->caught->header.exception_class != exceptionClass("GNUCOBJC")) {
        return nullptr;
    }
    return reinterpret_cast<ThrownObject*>(&globals->caught->header)->object;
}

void setTerminateHandler(std::terminate_handler handler) {
    std::set_terminate(handler);
}

} // namespace platform
