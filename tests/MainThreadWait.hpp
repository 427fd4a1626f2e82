#pragma once

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace kovra::testing {

/// Measures a wait for the main thread of a process, from this object's construction on. Time in
/// which the machine was busy does not count: the longer of how long the thread was ready to run
/// but not scheduled, and how much too late the waiting thread woke up.
class MainThreadWait {
  public:
    /// `process` is its name in /proc: a number, or "self".
    explicit MainThreadWait(const std::string& process)
        : accounts_("/proc/" + process + "/schedstat"), heldUpBefore_(heldUp()) {}

    [[nodiscard]] double seconds() const {
        return since(begun_) - std::max(heldUp() - heldUpBefore_, overslept_);
    }

    /// Waits a little for the answer.
    void sleep() {
        constexpr std::chrono::duration<double> asked(0.005);
        const auto start = Clock::now();
        std::this_thread::sleep_for(asked);
        overslept_ += since(start) - asked.count();
    }

  private:
    using Clock = std::chrono::steady_clock;

    static double since(Clock::time_point start) {
        return std::chrono::duration<double>(Clock::now() - start).count();
    }

    // In seconds. None if the system does not account for it, or the process is gone.
    [[nodiscard]] double heldUp() const {
        double ran = 0;
        double waited = 0;
        std::ifstream(accounts_) >> ran >> waited;
        return waited / 1e9;
    }

    std::string accounts_;
    Clock::time_point begun_ = Clock::now();
    double heldUpBefore_;
    double overslept_ = 0;
};

} // namespace kovra::testing
