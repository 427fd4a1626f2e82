#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace bench {

/// Prints what the benchmarks measured and, after it, how the ways of doing one job compare. A
/// benchmark is named "job/way/input"; the way called "ours" is what the others are held against.
class SideBySide : public benchmark::ConsoleReporter {
  public:
    SideBySide();

    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

  private:
    // By job and input, by way: seconds of one run, the shortest of those measured.
    std::map<std::string, std::map<std::string, double>> seconds;
};

} // namespace bench
