#include "practice-mac/stand-ins/AppleScriptSource.hpp"
#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Authorization.hpp"
#include "practice-mac/stand-ins/PrivilegedCommand.hpp"

#include <algorithm>
#include <iostream>

namespace practice {

namespace {

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
