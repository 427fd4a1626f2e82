#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Authorization.hpp"
#include "practice-mac/stand-ins/PrivilegedCommand.hpp"

#include <algorithm>
#include <iostream>
#include <optional>
#include <string_view>

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

/// The shell command of a source of the one form
///   do shell script "COMMAND" with administrator privileges
/// its string literal's escapes resolved; nothing for any other source.
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

int fail(const std::string& source, const Refusal& refusal) {
    // The numbers in front are the range of the source at which it went wrong.
    std::cerr << "0:" << source.size() << ": execution error: " << refusal.message << " ("
              << refusal.number << ")\n";
    return 1;
}

std::string withoutLastNewline(std::string text) {
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

} // namespace

int runOsascript(Invocation& call) {
    if (call.arguments.size() != 2 || call.arguments[0] != "-e") {
        return unknownRequest(call, "the arguments");
    }
    const std::string& source = call.arguments[1];
    const std::optional<std::string> command = administratorCommand(source);
    if (!command) {
        return unknownRequest(call, "the script");
    }
    if (const std::optional<Refusal> refusal = askForPassword()) {
        return fail(source, *refusal);
    }
    const Reply reply = askForPrivileged({*command, call.folder, call.environment});
    if (reply.status != 0) {
        const std::string reason = withoutLastNewline(reply.error);
        return fail(source, {reason.empty() ? "The command exited with a non-zero status." : reason,
                             reply.status});
    }
    std::string result = withoutLastNewline(reply.output);
    std::replace(result.begin(), result.end(), '\n', '\r');
    std::cout << result << '\n';
    return 0;
}

} // namespace practice
