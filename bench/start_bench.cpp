#include "bench/ProcessorTime.hpp"
#include "bench/ScanBenchmarks.hpp"
#include "platform/base/ChildProcess.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/PrivateMounts.hpp"

namespace bench {

namespace {

using platform::testing::EnvironmentVariable;

void measure(benchmark::State& state, const std::string& program, const std::string& printed) {
    // What the tools of the system take is theirs, so there are none, and an empty home.
    platform::testing::PrivateMounts::overlay("/usr/bin");
    std::filesystem::remove("/usr/bin/defaults");
    std::filesystem::remove("/usr/bin/security");
    const platform::testing::TemporaryFolder home;
    const EnvironmentVariable homeFolder("HOME", home.path().c_str());
    const EnvironmentVariable temporaryFolder("TMPDIR", home.path().c_str());

    const std::vector<std::string> arguments{"--inventory"};
    measureProcessorTime(state, [&] {
        const auto ended = platform::runChild(
            {.executablePath = program, .arguments = arguments, .standardInput = ""});
        if (ended.terminationStatus != 0 || ended.output != printed) {
            state.SkipWithError("the program did not do its job");
        }
    });
}

} // namespace

void registerStartBenchmarks() {
    const auto add = [](const char* name, const char* program, const char* printed) {
        configured(benchmark::RegisterBenchmark(name, measure, program, printed));
    };
    add("start/ours/--inventory", UNINSTALLER, "Nothing found.\n");
    add("start/empty program/--inventory", EMPTY_PROGRAM, "");
}

} // namespace bench
