#include "platform/services/UncaughtException.hpp"

#include "platform/foundation/NSObject.hpp"

#include <cstdint>
#include <cxxabi.h>
#include <string_view>
#include <unwind.h>

namespace platform {

namespace {

// The C++ runtime keeps what is being handled in a list, whose links end in the header that all
// languages share.
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

constexpr std::uint64_t runtimesClass(std::string_view name) {
    std::uint64_t value = 0;
    for (const char character : name) {
        value = value << 8 | static_cast<unsigned char>(character);
    }
    return value;
}

} // namespace

foundation::NSObject* caughtObject() noexcept {
    static_assert(sizeof(void*) == 8 && sizeof(_Unwind_Exception) == 32,
                  "The layout above is that of 64-bit systems.");
    auto* globals = reinterpret_cast<ExceptionGlobals*>(abi::__cxa_get_globals());
    if (globals->caught == nullptr ||
        globals->caught->header.exception_class != runtimesClass("GNUCOBJC")) {
        return nullptr;
    }
    return reinterpret_cast<ThrownObject*>(&globals->caught->header)->object;
}

void setTerminateHandler(std::terminate_handler handler) {
    std::set_terminate(handler);
}

} // namespace platform
