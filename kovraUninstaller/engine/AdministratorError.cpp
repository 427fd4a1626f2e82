#include "kovraUninstaller/engine/AdministratorError.hpp"

#include "platform/services/TextCase.hpp"

namespace kovra {

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
