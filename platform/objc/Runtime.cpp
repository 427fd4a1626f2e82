#include "platform/objc/Runtime.hpp"

#include "platform/objc/Method.hpp"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace platform::objc {

namespace {

std::atomic<FailureHandler> failureHandler = nullptr;

} // namespace

Class requireClass(const char* name) {
    const auto found = reinterpret_cast<Class>(objc_getClass(name));
    if (found == nullptr) {
        std::fprintf(stderr, "kovra Uninstaller: the system's class %s is missing.\n", name);
        std::abort();
    }
    return found;
}

const char* classNameOf(const Object* object) {
    return object_getClassName(reinterpret_cast<id>(const_cast<Object*>(object)));
}

const char* nameOf(SEL selector) {
    return sel_getName(selector);
}

void setFailureHandler(FailureHandler handler) {
    failureHandler = handler;
}

void failAtBoundary() noexcept {
    if (const FailureHandler handler = failureHandler) {
        handler();
    }
    std::abort();
}

} // namespace platform::objc
