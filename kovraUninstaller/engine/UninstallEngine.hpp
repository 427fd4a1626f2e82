#pragma once

#include "platform/base/Task.hpp"

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovra {

/// Why a step cannot go on: the administrator prompt was refused, or something failed.
class EngineError : public std::exception {
  public:
    enum class Kind { failed, adminCancelled };

    /// `sentence` is complete and shown to the user.
    static EngineError failed(std::string sentence) { return {Kind::failed, std::move(sentence)}; }

    /// The administrator prompt was refused or cancelled. The page shows the service's sentence for
    /// this kind, not this one.
    static EngineError adminCancelled() {
        return {Kind::adminCancelled, "The administrator prompt was cancelled."};
    }

    [[nodiscard]] Kind kind() const { return kind_; }

    /// The whole sentence, also behind a NUL byte.
    [[nodiscard]] const std::string& text() const { return sentence_; }

    /// The same up to its first NUL byte.
    [[nodiscard]] const char* what() const noexcept override { return sentence_.c_str(); }

  private:
    EngineError(Kind kind, std::string sentence) : kind_(kind), sentence_(std::move(sentence)) {}

    Kind kind_;
    std::string sentence_;
};

/// A step's problem lines: complete sentences for the user, in the order in which they arose.
using Problems = std::vector<std::string>;

/// Collects a step's problem lines and logs each at once. One thread at a time.
class StepReport {
  public:
    /// `area` is what the step's lines in the log begin with.
    explicit StepReport(std::string area) : area_(std::move(area)) {}

    /// Adds a sentence. A reason goes to the log alone, in parentheses behind it. Both are UTF-8.
    void add(const std::string& sentence, const std::string& reason = {});

    /// In the order in which they were added.
    [[nodiscard]] const Problems& problems() const { return sentences_; }

  private:
    std::string area_;
    Problems sentences_;
};

/// Does the work of the seven steps. Each returns its problem lines, none when it went clean, and
/// does not stop at the first problem. Progress goes to the log alone.
///
/// The steps block: they run in the background, one at a time. The engine must outlive the
/// tasks that it returns.
class UninstallEngine final {
  public:
    using EngineError = kovra::EngineError;

    UninstallEngine() = default;
    UninstallEngine(const UninstallEngine&) = delete;
    UninstallEngine& operator=(const UninstallEngine&) = delete;

    /// Ends the product's processes, unloads its agents and switches its start at login off. Takes
    /// at least 0.6 seconds. Returns no problems.
    Problems stopProcesses();

    /// Takes the input method out of the system's text input. Hops to the main thread for the input
    /// source and the bundle's properties.
    platform::Task<Problems> removeInputSourceState();

    /// Removes the application bundles: with `needsAdmin` first those in system folders, behind the
    /// administrator prompt, then the user's. Throws EngineError when the first part fails; the
    /// second is not done then.
    platform::Task<Problems> removeApps(bool needsAdmin);

    /// Removes everything else that the product left in the user's account.
    Problems removeData();

    /// Clears the privacy decisions. Returns no problems.
    Problems resetPermissions();

    /// Restarts the system's input services and menu bar. Returns no problems.
    Problems refreshSystemUI();

    /// Scans once more and returns a line for each thing that is still there.
    platform::Task<Problems> verify();

  private:
    friend class InputSourceHelperTest;

    /// Puts an executable copy of the helper into the temporary folder unless one is there.
    bool stageTistoolIfNeeded();

    /// Runs the staged helper; what it printed, trimmed, or a line that begins with "ERROR:".
    [[nodiscard]] std::string runTistool(const std::vector<std::string>& arguments) const;

    /// Sends all product processes the signal of the flag, such as "-9", or SIGTERM without one.
    void killKovraProcesses(const std::optional<std::string>& signalFlag);

    /// Main thread only.
    void switchToABCIfCurrentIsKovra();

    void clearLaunchServicesRegistrations();

    /// Without a trailing slash; nothing when the system names none.
    [[nodiscard]] std::optional<std::string> darwinUserCacheDirectory() const;

    /// Where the staged helper is, once it is.
    std::optional<std::string> tistoolPath;
};

} // namespace kovra
