// Reads long listings as the program does. `listings read KIND FILE` runs a tool that prints the
// file, and prints what was found, in sorted lines. `listings write KIND BYTES` prints such a
// listing. KIND is "keychain" or "registrations".

#include "bench/Dumps.hpp"
#include "kovraUninstaller/engine/LaunchServicesDump.hpp"
#include "kovraUninstaller/inventory/KeychainListing.hpp"
#include "kovraUninstaller/system/Shell.hpp"

#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Words = std::vector<std::string>;

int read(const std::string& kind, const std::string& file) {
    std::set<std::string> found;
    const auto collect = [&](const auto& part) {
        for (const auto& name : part) {
            found.emplace(name);
        }
    };
    const auto ended = kovra::Shell::run("/bin/cat", {file}, [&](std::string_view lines) {
        if (kind == "keychain") {
            collect(kovra::productAccountsInKeychainListing(lines));
        } else {
            collect(kovra::inputMethodPathsInLaunchServicesDump(lines));
        }
    });
    for (const std::string& name : found) {
        std::puts(name.c_str());
    }
    return ended.isUtf8 && ended.terminationStatus == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int write(const std::string& kind, std::size_t size) {
    constexpr std::size_t block = 10'000'000;
    const std::string text =
        kind == "keychain" ? bench::keychainDump(block) : bench::launchServicesDump();
    for (std::size_t written = 0; written < size; written += text.size()) {
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    const Words words(argv, argv + argc);
    if (words.size() == 4 && words[1] == "read") {
        return read(words[2], words[3]);
    }
    if (words.size() == 4 && words[1] == "write") {
        return write(words[2], std::stoul(words[3]));
    }
    std::fputs("usage: listings read|write keychain|registrations FILE|BYTES\n", stderr);
    return EXIT_FAILURE;
}
