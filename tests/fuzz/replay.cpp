// The main function of targets without a fuzzer: runs the target once with each file of the folders
// on the command line.

#include "tests/fuzz/FuzzTarget.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    std::size_t count = 0;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    for (const std::string& folder : arguments) {
        if (folder.starts_with("-")) {
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string input((std::istreambuf_iterator<char>(file)), {});
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()),
                                   input.size());
            ++count;
        }
    }
    std::printf("%zu inputs\n", count);
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
