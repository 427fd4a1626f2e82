#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The failure of a script that ran; each part only when the system gives it.
struct AppleScriptError {
    std::optional<std::string> message;
    std::optional<std::int64_t> number;
};

struct AppleScriptOutcome {
    /// False when no script could be made of the source.
    bool created = true;
    /// Nothing when the script succeeded.
    std::optional<AppleScriptError> error;
};

/// Makes a script of the source and runs it to its end; its result is dropped. Blocks until the
/// script ends, prompts to the user included. Always on the same serial queue: NSAppleScript is not
/// thread-safe.
[[nodiscard]] AppleScriptOutcome runAppleScript(const std::string& source);

/// On Linux alone: the message and the number in what `osascript` prints when a script fails:
/// "PLACE: execution error: MESSAGE (NUMBER)", whatever lines precede or follow. Text of another
/// form gives neither, a number that is out of range only the message.
[[nodiscard]] AppleScriptError parseOsascriptError(std::string_view standardError);

} // namespace platform
