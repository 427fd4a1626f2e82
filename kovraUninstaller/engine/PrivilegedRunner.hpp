#pragma once

#include "platform/base/Task.hpp"

#include <string>

namespace kovra {

/// Runs a shell script as root by having the system ask for an administrator. No instances.
class PrivilegedRunner {
  public:
    PrivilegedRunner() = delete;

    /// Ends when the script has succeeded; goes on in the background. Throws
    /// EngineError::adminCancelled when the dialog was dismissed and EngineError::failed, with a
    /// sentence for people, for everything else. One run at a time: a second waits for the end of
    /// the first. Does not block.
    static platform::Task<void> runScriptAsAdmin(std::string scriptPath);

  private:
    static void runScriptAsAdminSynchronously(const std::string& scriptPath);

    static platform::Executor& queue();
};

} // namespace kovra
