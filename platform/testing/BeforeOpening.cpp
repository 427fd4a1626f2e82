#include "platform/testing/BeforeOpening.hpp"

#include <cstdarg>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>
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
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return static_cast<int>(::syscall(SYS_openat, at, name, flags, mode));
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
