#pragma once

#include <functional>
#include <string>

namespace platform::testing {

/// Calls the action once, just before this process calls openat with that name: a race with another
/// process, made certain. One at a time, until the end of its life. A test that uses it has
/// BeforeOpening.cpp among its sources, which replaces the system's openat.
class OnceBeforeOpening {
  public:
    OnceBeforeOpening(std::string name, std::function<void()> action);
    ~OnceBeforeOpening();

    OnceBeforeOpening(const OnceBeforeOpening&) = delete;
    OnceBeforeOpening& operator=(const OnceBeforeOpening&) = delete;
};

} // namespace platform::testing
