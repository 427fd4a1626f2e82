#include "platform/services/CaughtObject.hpp"

#include <cxxabi.h>
#include <typeinfo>

// The system throws its objects as C++ exceptions. Their types share a table of functions, which
// the type that stands for any object begins with.
extern "C" const void* const OBJC_EHTYPE_id;

namespace platform {

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

} // namespace platform
