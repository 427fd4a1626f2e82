// The parsers of big listings against the tools that would otherwise do it, on the same bytes. A
// benchmark is named "what/way"; bench/run holds the way called "ours" against the others. A tool's
// time is that of the whole program, a few milliseconds of which are its start.

#include "bench/Dumps.hpp"
#include "kovraUninstaller/engine/LaunchServicesDump.hpp"
#include "kovraUninstaller/inventory/KeychainListing.hpp"
#include "kovraUninstaller/system/Shell.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <set>

namespace {

using Found = std::vector<std::string>;

/// A listing, in memory for our parser and in a file for the tools.
struct Listing {
    std::string bytes;
    std::string file;
};

using Way = Found (*)(const Listing& listing);

// A tool's lines, each once and sorted.
Found linesOf(std::string_view text) {
    std::set<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1);
        lines.insert(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    return {lines.begin(), lines.end()};
}

// As the scan does: the check that it is text, and the parsing.
Found accounts(const Listing& listing) {
    if (!platform::isValidUtf8(listing.bytes)) {
        return {};
    }
    const auto found = kovra::productAccountsInKeychainListing(listing.bytes);
    return {found.begin(), found.end()};
}

// Bytes, not characters: the quickest that the tools can be. Its lines end before the quote.
Found accountsByGrep(const Listing& listing) {
    Found found;
    const auto printed =
        kovra::Shell::run("/usr/bin/env", {"LC_ALL=C", "grep", "-ao",
                                           R"("acct"<blob>="ai\.kovra\.[^"]*")", listing.file});
    for (const std::string& line : linesOf(printed.output)) {
        for (const auto account : kovra::productAccountsInKeychainListing(line)) {
            found.emplace_back(account);
        }
    }
    return found;
}

Found accountsByAwk(const Listing& listing) {
    return linesOf(
        kovra::Shell::run("/usr/bin/env", {"LC_ALL=C", "awk", "-F", R"("acct"<blob>=")", R"(
                                       NF > 1 && split($2, value, "\"") > 1 &&
                                       index(value[1], "ai.kovra.") == 1 { seen[value[1]] }
                                       END { for (account in seen) print account })",
                                           listing.file})
            .output);
}

Found paths(const Listing& listing) {
    const auto found = kovra::inputMethodPathsInLaunchServicesDump(listing.bytes);
    return {found.begin(), found.end()};
}

Found pathsByGrep(const Listing& listing) {
    Found found;
    const auto printed = kovra::Shell::run(
        "/usr/bin/env", {"LC_ALL=C", "grep", "-aF", "kovraInput.app", listing.file});
    for (const std::string& line : linesOf(printed.output)) {
        for (const auto path : kovra::inputMethodPathsInLaunchServicesDump(line)) {
            found.emplace_back(path);
        }
    }
    std::ranges::sort(found);
    return found;
}

void measure(benchmark::State& state, Way way, Way ours, const Listing& listing) {
    if (way(listing) != ours(listing) || ours(listing).empty()) {
        state.SkipWithError("found something else than our parser");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(way(listing));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(listing.bytes.size()));
}

class Suite {
  public:
    void compare(const std::string& what, std::string bytes, Way ours,
                 const std::vector<std::pair<const char*, Way>>& theirs) {
        const std::string file = folder_.file(what, bytes);
        // Kept until the process ends, as the benchmarks are.
        const auto& listing = *new Listing{std::move(bytes), file};
        const auto add = [&](const char* name, Way way) {
            benchmark::RegisterBenchmark((what + "/" + name).c_str(), measure, way, ours, listing)
                ->UseRealTime()
                ->MinTime(0.2)
                ->Unit(benchmark::kMillisecond);
        };
        add("ours", ours);
        for (const auto& [name, way] : theirs) {
            add(name, way);
        }
    }

  private:
    platform::testing::TemporaryFolder folder_;
};

} // namespace

int main(int argc, char** argv) {
    Suite suite;
    for (const int megabytes : {1, 10, 100}) {
        suite.compare("accounts in a keychain listing of " + std::to_string(megabytes) + " MB",
                      bench::keychainDump(static_cast<std::size_t>(megabytes) * 1'000'000),
                      accounts, {{"grep", accountsByGrep}, {"awk", accountsByAwk}});
    }
    suite.compare("paths in a Launch Services dump of 32 MB", bench::launchServicesDump(), paths,
                  {{"grep", pathsByGrep}});
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
