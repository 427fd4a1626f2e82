// The parser of Launch Services dumps, compared with a plain one that reads line by line.

#include "kovraUninstaller/engine/LaunchServicesDump.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

#include <set>
#include <sstream>
#include <string>

namespace {

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string::npos
               ? std::string()
               : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::set<std::string> pathsLineByLine(const std::string& dump) {
    std::set<std::string> paths;
    std::istringstream lines(dump);
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        if (!line.starts_with("path:") || line.find("kovraInput.app") == std::string::npos) {
            continue;
        }
        const std::string path = trimmed(line.substr(5));
        paths.insert(path.substr(0, path.rfind(" (0x")));
    }
    return paths;
}

void compare(const std::string& dump) {
    const auto found = kovra::inputMethodPathsInLaunchServicesDump(dump);
    require(std::set<std::string>(found.begin(), found.end()) == pathsLineByLine(dump),
            "the parser finds what a line-by-line reader finds");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view dump = asText(bytes, size);
    compare(std::string(dump));
    if (isTriedAtLength(dump)) {
        compare(atLength(dump));
    }
    return 0;
}
