#pragma once

#include "platform/base/Task.hpp"

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovra {

/// Why a step cannot go on: the administrator said no, or something else did.
class EngineError : public std::exception {
  public:
    enum class Kind { failed, adminCancelled };

    /// `sentence` is whole and meant for people.
    static EngineError failed(std::string sentence) { return {Kind::failed, std::move(sentence)}; }

    /// The administrator prompt was refused or cancelled.
    static EngineError adminCancelled() {
        return {Kind::adminCancelled, "The administrator prompt was cancelled."};
    }

    [[nodiscard]] Kind kind() const { return kind_; }

    /// The sentence of a failure, whatever characters are in it.
    [[nodiscard]] const std::string& text() const { return sentence; }

    /// The same up to its first NUL byte.
    [[nodiscard]] const char* what() const noexcept override { return sentence.c_str(); }

  private:
    EngineError(Kind kind, std::string sentence) : kind_(kind), sentence(std::move(sentence)) {}

    Kind kind_;
    std::string sentence;
};

/// What a step wants people to know, in the order in which it arose; whole sentences.
using Problems = std::vector<std::string>;

/// Collects the problems of a step that is under way, and has each of them stand in the log from
/// the moment in which it arises. One thread at a time.
class StepReport {
  public:
    /// `area` is what the step's lines in the log begin with.
    explicit StepReport(std::string area) : area(std::move(area)) {}

    /// Adds a sentence. The reason, if there is one, stands in the log alone, behind it. Both are
    /// UTF-8.
    void add(const std::string& sentence, const std::string& reason = {});

    /// In the order in which they were added.
    [[nodiscard]] const Problems& problems() const { return sentences; }

  private:
    std::string area;
    Problems sentences;
};

/// Does the work of the seven steps. Each gives what people should know went wrong, in the order
/// in which it did, as whole sentences; nothing when the step went clean. No step stops at its
/// first problem. What went well goes to the log alone.
///
/// The steps block: they run in the background, one at a time. The engine outlives the tasks that
/// it gives.
class UninstallEngine final {
  public:
    using EngineError = kovra::EngineError;

    UninstallEngine() = default;
    UninstallEngine(const UninstallEngine&) = delete;
    UninstallEngine& operator=(const UninstallEngine&) = delete;

    /// Ends the product's processes, unloads its agents and switches its start at login off. Takes
    /// 0.6 seconds at least. Never a problem.
    Problems stopProcesses();

    /// Takes the input method out of the system's text input. Visits the main thread to ask for the
    /// active input source, and where the bundle can be asked only there; else in the background.
    platform::Task<Problems> removeInputSourceState();

    /// Removes the application bundles: the system's behind the administrator prompt, when
    /// `needsAdmin` says that there are any, then the user's. Throws EngineError when the first
    /// half fails; then nothing of the second is done.
    platform::Task<Problems> removeApps(bool needsAdmin);

    /// Removes everything else that the product left in the user's account.
    Problems removeData();

    /// Clears the privacy decisions. Never a problem.
    Problems resetPermissions();

    /// Restarts the system's input services and menu bar. Never a problem.
    Problems refreshSystemUI();

    /// Scans once more and gives a line for each thing that is still there.
    platform::Task<Problems> verify();

  private:
    friend class InputSourceHelperTest;

    /// Puts an executable copy of the helper into the temporary folder unless one is there.
    bool stageTistoolIfNeeded();

    /// Runs the staged helper; what it printed, trimmed, or a line that begins with "ERROR:".
    [[nodiscard]] std::string runTistool(const std::vector<std::string>& arguments) const;

    /// Sends all product processes a signal: the flag's, or SIGTERM without one.
    void killKovraProcesses(const std::optional<std::string>& signalFlag);

    /// Main thread only.
    void switchToABCIfCurrentIsKovra();

    void clearLaunchServicesRegistrations();

    /// Without a trailing slash; nothing when the system does not say.
    [[nodiscard]] std::optional<std::string> darwinUserCacheDirectory() const;

    /// Where the staged helper is, once it is.
    std::optional<std::string> tistoolPath;
};

} // namespace kovra
