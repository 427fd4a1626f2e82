#include "kovraUninstaller/engine/ScriptQuoting.hpp"

namespace kovra {

std::string quotedForShell(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        if (character == '\'') {
            quoted += R"('\'')";
        } else {
            quoted += character;
        }
    }
    return quoted + "'";
}

// One walk over the text escapes each character once, so no backslash of ours is doubled again.
std::string escapedForAppleScript(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '\\' || character == '"') {
            escaped += '\\';
        }
        escaped += character;
    }
    return escaped;
}

std::string administratorScriptSource(std::string_view scriptPath) {
    const std::string command = "/bin/bash " + quotedForShell(scriptPath);
    return "do shell script \"" + escapedForAppleScript(command) +
           "\" with administrator privileges";
}

} // namespace kovra
