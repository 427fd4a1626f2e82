#pragma once

#include "kovraUninstaller/engine/EngineError.hpp"
#include "platform/services/AppleScript.hpp"

namespace kovra {

/// What an AppleScript's error means for the uninstall. A dismissed dialog is told by its number,
/// which is the same in every language, else by its text, letter case aside. Any thread.
[[nodiscard]] EngineError engineErrorFor(const platform::AppleScriptError& error);

} // namespace kovra
