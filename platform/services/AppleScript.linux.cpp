#include "platform/services/AppleScript.hpp"

#include "platform/base/ChildProcess.hpp"
#include "platform/services/OsascriptError.hpp"

#include <array>
#include <system_error>

namespace platform {

AppleScriptOutcome runAppleScript(const std::string& source) {
    const std::array<std::string, 2> arguments{"-e", source};
    try {
        const ChildResult ended = spawnAndWait({.executablePath = "/usr/bin/osascript",
                                                .arguments = arguments,
                                                .standardInput = std::nullopt,
                                                .collected = ChildOutput::errorsOnly});
        if (ended.terminationStatus == 0) {
            return {};
        }
        return {.created = true, .error = parseOsascriptError(ended.output)};
    } catch (const std::system_error&) {
        return {.created = false, .error = std::nullopt};
    }
}

} // namespace platform
