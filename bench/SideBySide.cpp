#include "bench/SideBySide.hpp"

#include <algorithm>
#include <cstdio>
#include <ostream>

namespace bench {

namespace {

// Google Benchmark 1.8 has another name for it.
template <typename Run>
bool failed(const Run& run) {
    if constexpr (requires { run.skipped; }) {
        return static_cast<bool>(run.skipped);
    } else {
        return run.error_occurred;
    }
}

} // namespace

SideBySide::SideBySide() : benchmark::ConsoleReporter(OO_Tabular) {}

void SideBySide::ReportRuns(const std::vector<Run>& runs) {
    benchmark::ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        const std::size_t first = name.find('/');
        const std::size_t second = name.find('/', first + 1);
        if (failed(run) || run.run_type != Run::RT_Iteration || second == std::string::npos) {
            continue;
        }
        const std::string job = name.substr(0, first) + name.substr(second);
        const std::string way = name.substr(first + 1, second - first - 1);
        const double once = run.real_accumulated_time / static_cast<double>(run.iterations);
        const auto [found, isNew] = seconds[job].emplace(way, once);
        found->second = std::min(found->second, once);
    }
}

void SideBySide::Finalize() {
    std::ostream& out = GetOutputStream();
    out << "\nside by side: processor time, the least of the rounds, and how often ours would fit "
           "into it\n";
    for (const auto& [job, ways] : seconds) {
        const auto ours = ways.find("ours");
        out << "  " << job << ":";
        for (const auto& [way, once] : ways) {
            char text[96];
            std::snprintf(text, sizeof text, "  %s %.3f ms", way.c_str(), 1000 * once);
            out << text;
            if (ours != ways.end() && way != "ours") {
                std::snprintf(text, sizeof text, " (%.2f x)", once / ours->second);
                out << text;
            }
        }
        out << "\n";
    }
}

} // namespace bench
