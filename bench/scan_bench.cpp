#include "bench/ScanBenchmarks.hpp"
#include "bench/SideBySide.hpp"

int main(int argc, char** argv) {
    bench::registerKeychainBenchmarks();
    bench::registerStartBenchmarks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    bench::SideBySide reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
