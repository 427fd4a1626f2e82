#include "kovraUninstaller/system/Shell.hpp"

#include "platform/base/ChildProcess.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/base/WholeLines.hpp"

#include <utility>

namespace kovra {

Shell::Result Shell::run(const std::string& executablePath,
                         const std::vector<std::string>& arguments,
                         std::optional<std::string_view> stdinData) {
    platform::ChildResult ended = platform::spawnAndWait({executablePath, arguments, stdinData});
    const platform::SharedBytes data(std::move(ended.output));
    return {ended.terminationStatus, platform::isValidUtf8(data) ? data : platform::SharedBytes(),
            data};
}

// A line feed is no part of a longer sequence, so the whole is UTF-8 when each part of whole lines
// is.
Shell::StreamedResult Shell::run(const std::string& executablePath,
                                 const std::vector<std::string>& arguments,
                                 const LinesReceiver& receive) {
    StreamedResult result;
    const auto check = [&](std::string_view lines) {
        result.isUtf8 = result.isUtf8 && platform::isValidUtf8(lines);
        if (result.isUtf8) {
            receive(lines);
        }
    };
    platform::WholeLines wholeLines;
    result.terminationStatus =
        platform::spawnAndWait({executablePath, arguments, std::nullopt},
                               [&](std::string_view piece) { wholeLines.append(piece, check); });
    wholeLines.finish(check);
    return result;
}

} // namespace kovra
