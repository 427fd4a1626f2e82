#pragma once

#include <string>
#include <string_view>

namespace kovra {

// The only places where text becomes part of a shell command or of an AppleScript. Any thread.

/// The text as one word of a shell command, whatever is in it.
[[nodiscard]] std::string quotedForShell(std::string_view text);

/// The text as it stands between the double quotes of an AppleScript string.
[[nodiscard]] std::string escapedForAppleScript(std::string_view text);

/// The AppleScript that runs the shell script at the path as root, behind the system's password
/// dialog. Bash reads the script, which needs no right to be executed.
[[nodiscard]] std::string administratorScriptSource(std::string_view scriptPath);

} // namespace kovra
