#include "platform/services/UncaughtException.hpp"

#include "platform/foundation/NSObject.hpp"

#include <cxxabi.h>
#include <dlfcn.h>
#include <typeinfo>

// The runtime throws Objective-C objects as C++ exceptions. Their type_info objects share a vtable,
// to which the first word of this one, the type of `id`, points.
extern "C" const void* const OBJC_EHTYPE_id;

namespace platform {

namespace {

std::terminate_handler ourHandler = nullptr;
std::terminate_handler systemsHandler = nullptr;

// The terminate handler for exceptions that the system's C++ runtime threw. An object that nothing
// catches is current in that runtime, and the system's handler reports it; one that met a noexcept
// function of ours is current in ours.
[[noreturn]] void terminateForTheSystem() {
    if (abi::__cxa_current_exception_type() == nullptr && systemsHandler != nullptr) {
        systemsHandler();
    }
    ourHandler();
    std::abort();
}

using SetTerminate = std::terminate_handler (*)(std::terminate_handler) noexcept;

// std::set_terminate of the system's C++ runtime; null where the program has no other.
SetTerminate systemsSetTerminate() {
    void* runtime = ::dlopen("/usr/lib/libc++abi.dylib", RTLD_LAZY | RTLD_LOCAL);
    void* found = runtime == nullptr ? nullptr : ::dlsym(runtime, "_ZSt13set_terminatePFvvE");
    const auto function = reinterpret_cast<SetTerminate>(found);
    return function == static_cast<SetTerminate>(&std::set_terminate) ? nullptr : function;
}

} // namespace

foundation::NSObject* caughtObject() noexcept {
    const std::type_info* type = abi::__cxa_current_exception_type();
    if (type == nullptr || *reinterpret_cast<const void* const*>(type) != OBJC_EHTYPE_id) {
        return nullptr;
    }
    void* thrown = abi::__cxa_current_primary_exception();
    auto* object = thrown == nullptr ? nullptr : *static_cast<foundation::NSObject**>(thrown);
    abi::__cxa_decrement_exception_refcount(thrown);
    return object;
}

// An exception carries the terminate handler of the C++ runtime that threw it. A program with a
// runtime of its own has to set its handler in both.
void setTerminateHandler(std::terminate_handler handler) {
    ourHandler = handler;
    std::set_terminate(handler);
    if (const SetTerminate setSystems = systemsSetTerminate()) {
        systemsHandler = setSystems(terminateForTheSystem);
    }
}

} // namespace platform
