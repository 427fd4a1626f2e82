#pragma once

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace kovra::testing {

/// How long the main thread of a process has let somebody wait, from this object's making on. Time
/// in which the machine kept the two from running does not count, the longer of what each lost: the
/// thread was ready and the system ran others, or the one who waits overslept.
class MainThreadWait {
  public:
    /// `process` as it is named in /proc: a number, or "self".
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

    // Seconds in all. None where the system keeps no such account, or the process is gone.
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
