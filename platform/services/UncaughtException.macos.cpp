#include "platform/services/UncaughtException.hpp"

#include "platform/foundation/NSObject.hpp"

#include <cxxabi.h>
#include <dlfcn.h>
#include <typeinfo>

// The system throws its objects as C++ exceptions. Their types share a table of functions, which
// the type that stands for any object begins with.
extern "C" const void* const OBJC_EHTYPE_id;

namespace platform {

namespace {

std::terminate_handler ours = nullptr;
std::terminate_handler theSystems = nullptr;

// Called for what the system threw. An object that nobody catches is handled in the system's
// runtime, whose own handler knows it; one that met a function of ours is handled in ours.
[[noreturn]] void terminateForTheSystem() {
    if (abi::__cxa_current_exception_type() == nullptr && theSystems != nullptr) {
        theSystems();
    }
    ours();
    std::abort();
}

using SetTerminate = std::terminate_handler (*)(std::terminate_handler) noexcept;

// Null where the program has no C++ runtime beside the system's.
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

// An exception carries the terminate handler of the runtime that threw it. A program that holds a
// C++ runtime of its own has to name its handler to both.
void setTerminateHandler(std::terminate_handler handler) {
    ours = handler;
    std::set_terminate(handler);
    if (const SetTerminate setSystems = systemsSetTerminate()) {
        theSystems = setSystems(terminateForTheSystem);
    }
}

} // namespace platform
