#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace bench {

/// The seconds that a call takes.
template <class Call>
double secondsFor(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Measures ours and theirs in turn, so that a change in the machine's load meets both; prints the
/// median of each and their ratio. Each `prepare` is not measured.
template <class Prepare, class Ours, class Theirs>
void compare(const char* what, const char* theirName, int rounds, Prepare prepare, Ours ours,
             Theirs theirs) {
    std::vector<double> ourTimes;
    std::vector<double> theirTimes;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        ourTimes.push_back(secondsFor(ours));
        prepare();
        theirTimes.push_back(secondsFor(theirs));
    }
    const auto median = [](std::vector<double>& times) {
        std::ranges::sort(times);
        return times[times.size() / 2];
    };
    const double our = median(ourTimes);
    const double their = median(theirTimes);
    std::printf("%-40s ours %8.1f ms   %s %8.1f ms   ratio %.2f\n", what, our * 1e3, theirName,
                their * 1e3, our / their);
}

} // namespace bench
