#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// What a script that ran says of its failure; each part only when the system gives it.
struct AppleScriptError {
    std::optional<std::string> message;
    std::optional<std::int64_t> number;
};

struct AppleScriptOutcome {
    /// False when there is no script to run: the source cannot be taken.
    bool created = true;
    /// Nothing when the script succeeded.
    std::optional<AppleScriptError> error;
};

/// Makes a script of the source and runs it to its end; its result is dropped. Blocks for as long
/// as the script, and the people whom it asks, take. Always from the same serial queue: scripts
/// do not bear two threads.
[[nodiscard]] AppleScriptOutcome runAppleScript(const std::string& source);

/// On Linux alone: the message and the number in what `osascript` prints when a script fails:
/// "PLACE: execution error: MESSAGE (NUMBER)", whatever lines stand before and behind. Text of
/// another form gives neither, a number that is too large only the message. Any thread.
[[nodiscard]] AppleScriptError parseOsascriptError(std::string_view standardError);

} // namespace platform
