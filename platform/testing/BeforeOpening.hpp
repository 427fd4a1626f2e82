#pragma once

#include <functional>
#include <string>

namespace platform::testing {

/// Acts once, when this process is about to open something of that name in a folder that is open:
/// the moment in which somebody else could change what stands there. One at a time; nothing happens
/// any more when it is gone. A test that uses it has BeforeOpening.cpp among its sources, which
/// takes the place of the system's openat.
class OnceBeforeOpening {
  public:
    OnceBeforeOpening(std::string name, std::function<void()> action);
    ~OnceBeforeOpening();

    OnceBeforeOpening(const OnceBeforeOpening&) = delete;
    OnceBeforeOpening& operator=(const OnceBeforeOpening&) = delete;
};

} // namespace platform::testing
