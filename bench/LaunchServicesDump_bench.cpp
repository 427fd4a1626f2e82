// The search of a Launch Services dump of realistic size against grep's search of the same bytes.

#include "bench/Stopwatch.hpp"
#include "kovraUninstaller/engine/LaunchServicesDump.hpp"
#include "platform/base/ChildProcess.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <array>
#include <cstdlib>

namespace {

constexpr std::size_t wanted = 5;

// Some 12,800 records in 390,000 lines and 32 MB, five of which are of the input method.
std::string makeDump() {
    constexpr int records = 12'784;
    std::string dump;
    for (int record = 0; record < records; ++record) {
        const bool ours = record % (records / static_cast<int>(wanted)) == 1;
        const std::string number = std::to_string(record);
        const std::string bundle = ours ? "/Library/Input Methods/" + number + "/kovraInput.app"
                                        : "/Applications/Package " + number + ".app";
        dump +=
            std::string(80, '-') + "\nbundle id:                  Package (0x1" + number + ")\n";
        dump += "path:                       " + bundle + " (0x" + number + ")\n";
        for (int line = 0; line < 27; ++line) {
            dump += "    claimed kinds:          key = \"public.kinds.of.work." + number +
                    "\"; rank = Alternate; knows\n";
        }
    }
    return dump;
}

} // namespace

int main() {
    const platform::testing::TemporaryFolder temporary;
    const std::string dump = makeDump();
    const std::string file = temporary.file("dump", dump);
    std::printf("%zu bytes\n", dump.size());
    bench::compare(
        "paths in a dump", "grep", 15, [] {},
        [&] {
            if (kovra::inputMethodPathsInLaunchServicesDump(dump).size() < wanted) {
                std::abort();
            }
        },
        [&] {
            const std::array<std::string, 3> arguments{"-F", "kovraInput.app", file};
            if (platform::runChild({.executablePath = "/bin/grep", .arguments = arguments})
                    .terminationStatus != 0) {
                std::abort();
            }
        });
}
