#pragma once

#include <chrono>
#include <fstream>
#include <string>

namespace kovra::testing {

/// How long the main thread of a process has let somebody wait, from this object's making on. The
/// time in which the thread was ready to run and the system ran others does not count: the machine
/// was busy then, and not the thread.
class MainThreadWait {
  public:
    /// `process` as it is named in /proc: a number, or "self".
    explicit MainThreadWait(const std::string& process)
        : accounts("/proc/" + process + "/schedstat"), heldUpBefore(heldUp()) {}

    [[nodiscard]] double seconds() const {
        const std::chrono::duration<double> passed = Clock::now() - begun;
        return passed.count() - (heldUp() - heldUpBefore);
    }

  private:
    using Clock = std::chrono::steady_clock;

    // Seconds in all. None where the system keeps no such account, or the process is gone.
    [[nodiscard]] double heldUp() const {
        double ran = 0;
        double waited = 0;
        std::ifstream(accounts) >> ran >> waited;
        return waited / 1e9;
    }

    std::string accounts;
    Clock::time_point begun = Clock::now();
    double heldUpBefore;
};

} // namespace kovra::testing
