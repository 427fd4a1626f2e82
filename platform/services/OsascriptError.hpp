#pragma once

#include "platform/services/AppleScript.hpp"

#include <string_view>

namespace platform {

/// The message and the number in what `osascript` prints when a script fails:
/// "PLACE: execution error: MESSAGE (NUMBER)", whatever lines stand before and behind. Text of
/// another form gives neither, a number that is too large only the message. Any thread.
[[nodiscard]] AppleScriptError parseOsascriptError(std::string_view standardError);

} // namespace platform
