#pragma once

#include "platform/services/AppleScript.hpp"

#include <string_view>

namespace platform {

/// The message and the number in what `osascript` prints when a script fails:
/// "PLACE: execution error: MESSAGE (NUMBER)". Text of another form gives neither. Any thread.
[[nodiscard]] AppleScriptError parseOsascriptError(std::string_view standardError);

} // namespace platform
