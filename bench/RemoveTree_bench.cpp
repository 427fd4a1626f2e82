// removeTree against `rm -rf` on the same trees, in turn. On a busy disk, point TMPDIR to memory.

#include "bench/Stopwatch.hpp"
#include "platform/base/ChildProcess.hpp"
#include "platform/base/RemoveTree.hpp"
#include "platform/testing/TemporaryFolder.hpp"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr int files = 100'000;
constexpr int rounds = 5;

void makeFiles(const std::string& folder, int from, int to) {
    ::mkdir(folder.c_str(), 0700);
    for (int number = from; number < to; ++number) {
        const std::string path = folder + "/file " + std::to_string(number) + ".txt";
        ::close(::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
}

void removeWithTool(const std::string& path) {
    const std::array<std::string, 3> arguments{"-rf", "--", path};
    const auto ended = platform::runChild({.executablePath = "/bin/rm", .arguments = arguments});
    if (ended.terminationStatus != 0) {
        std::abort();
    }
}

void removeWithUs(const std::string& path) {
    if (platform::removeTree(path)) {
        std::abort();
    }
}

template <class Make>
void compareOn(const char* what, const std::string& tree, Make make) {
    bench::compare(
        what, "rm -rf", rounds, make, [&] { removeWithUs(tree); }, [&] { removeWithTool(tree); });
}

} // namespace

int main() {
    const platform::testing::TemporaryFolder temporary;
    const std::string tree = temporary.path("tree");
    compareOn("100,000 files in one folder", tree, [&] { makeFiles(tree, 0, files); });
    compareOn("100,000 files in 1,000 folders", tree, [&] {
        ::mkdir(tree.c_str(), 0700);
        for (int folder = 0; folder < 1000; ++folder) {
            makeFiles(tree + "/" + std::to_string(folder), 0, files / 1000);
        }
    });
    compareOn("100 nested folders of 100 files", tree, [&] {
        std::string folder = tree;
        for (int level = 0; level < 100; ++level) {
            makeFiles(folder, 0, 100);
            folder += "/level";
        }
    });
}
