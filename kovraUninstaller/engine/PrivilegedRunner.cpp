#include "kovraUninstaller/engine/PrivilegedRunner.hpp"

#include "platform/services/Queues.hpp"
#include "platform/services/TextCase.hpp"

namespace kovra {

platform::Executor& PrivilegedRunner::queue() {
    static platform::Executor& only =
        platform::makeSerialQueue("ai.kovra.uninstaller.privileged-runner");
    return only;
}

platform::Task<void> PrivilegedRunner::runScriptAsAdmin(std::string scriptPath) {
    std::exception_ptr failure;
    co_await platform::resumeOn(queue());
    try {
        runScriptAsAdminSynchronously(scriptPath);
    } catch (...) {
        failure = platform::currentFailure();
    }
    co_await platform::resumeOn(platform::utilityQueue());
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void PrivilegedRunner::runScriptAsAdminSynchronously(const std::string& scriptPath) {
    const auto outcome = platform::runAppleScript(administratorScriptSource(scriptPath));
    if (!outcome.created) {
        throw EngineError::failed("Could not create the privileged removal script.");
    }
    if (outcome.error) {
        throw engineErrorFor(*outcome.error);
    }
}

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

// One pass escapes each character once, so that no added backslash is escaped again.
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

EngineError engineErrorFor(const platform::AppleScriptError& error) {
    constexpr int userCancelled = -128;
    const std::string message = error.message.value_or("Unknown error");
    const bool saysCancel = platform::localizedCaseInsensitiveContains(message, "cancel");
    if (error.number == userCancelled || saysCancel) {
        return EngineError::adminCancelled();
    }
    return EngineError::failed("Privileged removal failed: " + message);
}

} // namespace kovra
