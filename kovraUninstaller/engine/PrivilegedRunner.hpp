#pragma once

#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "platform/base/Task.hpp"
#include "platform/services/AppleScript.hpp"

#include <string>
#include <string_view>

namespace kovra {

/// Runs a shell script as root, after the system's password dialog. No instances.
class PrivilegedRunner {
  public:
    PrivilegedRunner() = delete;

    /// Ends when the script has succeeded; the caller resumes in the background. Throws
    /// EngineError::adminCancelled when the dialog was dismissed, and EngineError::failed, with a
    /// sentence for the user, for everything else. One run at a time: a second waits for the end of
    /// the first. Does not block.
    static platform::Task<void> runScriptAsAdmin(std::string scriptPath);

  private:
    static void runScriptAsAdminSynchronously(const std::string& scriptPath);

    static platform::Executor& queue();
};

// The only places where text becomes part of a shell command or of an AppleScript. Any thread.

/// The text as one word of a shell command, whatever characters it has.
[[nodiscard]] std::string quotedForShell(std::string_view text);

/// The text as it stands between the double quotes of an AppleScript string.
[[nodiscard]] std::string escapedForAppleScript(std::string_view text);

/// The AppleScript that runs the shell script at the path as root, behind the system's password
/// dialog. Bash reads the script, which needs no execute permission.
[[nodiscard]] std::string administratorScriptSource(std::string_view scriptPath);

/// What an AppleScript's error means for the removal. A dismissed dialog is recognised by its
/// number, which is the same in every language, else by its text, case-insensitively. Any thread.
[[nodiscard]] EngineError engineErrorFor(const platform::AppleScriptError& error);

} // namespace kovra
