#include "kovraUninstaller/engine/LaunchServicesDump.hpp"

#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <optional>

namespace kovra {

namespace {

constexpr std::string_view pathKey = "path:";

// Newer systems print the record's number behind the path.
constexpr std::string_view numberMarker = " (0x";

std::optional<std::string_view> pathInLine(std::string_view line) {
    line = platform::trimmedSpacesAndTabs(line);
    if (!line.starts_with(pathKey)) {
        return std::nullopt;
    }
    const std::string_view value = platform::trimmedSpacesAndTabs(line.substr(pathKey.size()));
    return value.substr(0, value.rfind(numberMarker));
}

} // namespace

// Only lines with a hit are parsed.
std::set<std::string_view> inputMethodPathsInLaunchServicesDump(std::string_view dump) {
    std::set<std::string_view> paths;
    std::size_t from = 0;
    while (true) {
        const std::size_t hit = platform::findText(dump, KovraFootprint::lsSweepNeedle, from);
        if (hit == std::string_view::npos) {
            return paths;
        }
        const std::size_t start = dump.rfind('\n', hit) + 1;
        const std::size_t end = std::min(dump.find('\n', hit), dump.size());
        if (const auto path = pathInLine(dump.substr(start, end - start))) {
            paths.insert(*path);
        }
        from = end;
    }
}

} // namespace kovra
