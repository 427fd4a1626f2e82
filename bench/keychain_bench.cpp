#include "bench/KeychainDump.hpp"
#include "bench/MappedFile.hpp"
#include "bench/ProcessorTime.hpp"
#include "bench/ScanBenchmarks.hpp"
#include "kovraUninstaller/inventory/KeychainListing.hpp"
#include "kovraUninstaller/system/Shell.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <algorithm>
#include <set>

namespace bench {

namespace {

using Accounts = std::vector<std::string>;
using Way = Accounts (*)(const std::string& file);

// What the uninstaller does with a listing, from the file that the other tools are given: the
// check that it is text, and the parsing.
Accounts ours(const std::string& file) {
    const MappedFile listing(file);
    return platform::isValidUtf8(listing.bytes())
               ? kovra::productAccountsInKeychainListing(listing.bytes())
               : Accounts();
}

// The same with the tool's end of it: a program that prints the listing, and what is collected.
Accounts oursFromAProgram(const std::string& file) {
    return kovra::productAccountsInKeychainListing(kovra::Shell::run("/bin/cat", {file}).output);
}

// A tool's lines, each once and sorted.
Accounts linesOf(std::string_view text) {
    std::set<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1);
        lines.insert(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    return {lines.begin(), lines.end()};
}

// Bytes, not characters: the quickest that the tools can be. Its lines end before the quote.
Accounts grep(const std::string& file) {
    Accounts found;
    const auto printed = kovra::Shell::run(
        "/usr/bin/env", {"LC_ALL=C", "grep", "-ao", R"("acct"<blob>="ai\.kovra\.[^"]*")", file});
    for (const std::string& line : linesOf(printed.output)) {
        found.push_back(kovra::productAccountsInKeychainListing(line).at(0));
    }
    return found;
}

Accounts awk(const std::string& file) {
    return linesOf(
        kovra::Shell::run("/usr/bin/env", {"LC_ALL=C", "awk", "-F", R"("acct"<blob>=")", R"(
                                       NF > 1 && split($2, value, "\"") > 1 &&
                                       index(value[1], "ai.kovra.") == 1 { seen[value[1]] }
                                       END { for (account in seen) print account })",
                                           file})
            .output);
}

void measure(benchmark::State& state, Way way, const std::string& file) {
    if (way(file) != ours(file) || ours(file).empty()) {
        state.SkipWithError("found other accounts than our parser");
        return;
    }
    measureProcessorTime(state, [&] { benchmark::DoNotOptimize(way(file)); });
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(std::filesystem::file_size(file)));
}

} // namespace

void registerKeychainBenchmarks() {
    // Kept until the process ends, which removes it.
    static const platform::testing::TemporaryFolder folder;
    for (const int megabytes : {1, 10, 100}) {
        const std::string size = std::to_string(megabytes) + " MB";
        const std::string file =
            folder.file(size, keychainDump(static_cast<std::size_t>(megabytes) * 1'000'000));
        const auto add = [&](const char* way, Way run) {
            const std::string name = std::string("keychain/") + way + "/" + size;
            configured(benchmark::RegisterBenchmark(name.c_str(), measure, run, file));
        };
        add("ours", ours);
        add("ours from a program", oursFromAProgram);
        add("grep", grep);
        add("awk", awk);
    }
}

} // namespace bench
