#include "platform/testing/BeforeOpening.hpp"

#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <utility>

namespace {

std::string awaited;
std::function<void()> action;

} // namespace

extern "C" int openat(int at, const char* name, int flags, ...) {
    if (action && name == awaited) {
        std::exchange(action, nullptr)();
    }
    va_list rest;
    va_start(rest, flags);
    const int mode = va_arg(rest, int);
    va_end(rest);
    static const auto systems = reinterpret_cast<decltype(&::openat)>(::dlsym(RTLD_NEXT, "openat"));
    return systems(at, name, flags, mode);
}

namespace platform::testing {

OnceBeforeOpening::OnceBeforeOpening(std::string name, std::function<void()> now) {
    awaited = std::move(name);
    action = std::move(now);
}

OnceBeforeOpening::~OnceBeforeOpening() {
    action = nullptr;
}

} // namespace platform::testing
