#pragma once

#include <benchmark/benchmark.h>

#include <sys/resource.h>

namespace bench {

/// The seconds of processor time that this process and the children it has waited for have taken.
/// What else the machine does hardly shows in it, and a program that we start counts like our own
/// work.
inline double processorSeconds() {
    double seconds = 0;
    for (const auto whose : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        ::getrusage(whose, &usage);
        for (const timeval& part : {usage.ru_utime, usage.ru_stime}) {
            seconds += static_cast<double>(part.tv_sec) + 1e-6 * static_cast<double>(part.tv_usec);
        }
    }
    return seconds;
}

/// Calls the work as often as the benchmark wants and reports the processor time of each call.
template <class Work>
void measureProcessorTime(benchmark::State& state, Work work) {
    for (auto _ : state) {
        const double before = processorSeconds();
        work();
        state.SetIterationTime(processorSeconds() - before);
    }
}

/// Three rounds in milliseconds of processor time.
inline void configured(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseManualTime()->Repetitions(3)->Unit(benchmark::kMillisecond);
}

} // namespace bench
