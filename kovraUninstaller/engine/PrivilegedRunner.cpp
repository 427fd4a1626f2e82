#include "kovraUninstaller/engine/PrivilegedRunner.hpp"

#include "kovraUninstaller/engine/AdministratorError.hpp"
#include "kovraUninstaller/engine/ScriptQuoting.hpp"
#include "platform/services/AppleScript.hpp"
#include "platform/services/Queues.hpp"

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

} // namespace kovra
