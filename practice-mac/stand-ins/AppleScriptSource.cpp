#include "practice-mac/stand-ins/AppleScriptSource.hpp"

namespace practice {

namespace {

/// What a backslash and this letter stand for in AppleScript, if anything.
std::optional<char> escaped(char letter) {
    switch (letter) {
    case '"':
    case '\\': return letter;
    case 'n': return '\n';
    case 'r': return '\r';
    case 't': return '\t';
    default: return std::nullopt;
    }
}

} // namespace

std::optional<std::string> administratorCommand(std::string_view source) {
    constexpr std::string_view head = "do shell script \"";
    constexpr std::string_view tail = " with administrator privileges";
    if (!source.starts_with(head)) {
        return std::nullopt;
    }
    source.remove_prefix(head.size());
    std::string command;
    while (!source.empty() && source.front() != '"') {
        char letter = source.front();
        if (letter == '\\') {
            const std::optional<char> meant = escaped(source.size() > 1 ? source[1] : '\0');
            if (!meant) {
                return std::nullopt;
            }
            letter = *meant;
            source.remove_prefix(1);
        }
        command += letter;
        source.remove_prefix(1);
    }
    if (source.empty() || source.substr(1) != tail) {
        return std::nullopt;
    }
    return command;
}

} // namespace practice
