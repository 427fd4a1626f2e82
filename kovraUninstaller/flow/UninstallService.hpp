#pragma once

#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"
#include "platform/base/Task.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace kovra {

/// Notifies its listeners before a change. Main thread.
class ChangeNotice {
  public:
    /// Calls the listener before each change, while the value is still the old one. It is kept as
    /// long as the notice lives, and must not change the value itself.
    void listen(std::function<void()> listener) { listeners_.push_back(std::move(listener)); }

    void announce() const {
        for (const auto& listener : listeners_) {
            listener();
        }
    }

  private:
    std::vector<std::function<void()>> listeners_;
};

/// A value whose listeners are notified before each change. Main thread.
template <class T>
class Published {
  public:
    Published(const ChangeNotice& notice, T initial)
        : notice_(notice), current_(std::move(initial)) {}

    [[nodiscard]] const T& value() const { return current_; }

    void set(T replacement) {
        notice_.announce();
        current_ = std::move(replacement);
    }

    /// Changes the value in place: one notification, whatever `change` does.
    template <class Change>
    void modify(Change change) {
        notice_.announce();
        change(current_);
    }

  private:
    const ChangeNotice& notice_;
    T current_;
};

/// The product's download page.
inline constexpr const char* downloadPageAddress = "https://kovra.example/download";

/// The flow of a whole uninstall: the preflight scan when it is created, then, when the user starts
/// it, the seven steps in order. Scan and steps run in the background; every member is called on
/// the main thread. It must not be destroyed while a scan or a run is under way.
class UninstallService {
  public:
    using StepState = kovra::StepState;
    using StepDisplay = kovra::StepDisplay;
    using Phase = kovra::Phase;

    /// The operation of each step: the engine's own, unless a test replaces it. Called in the
    /// background; only `removeApps` may throw.
    struct Operations {
        using Engine = UninstallEngine;

        std::function<Problems(Engine&)> stopProcesses = &Engine::stopProcesses;
        std::function<platform::Task<Problems>(Engine&)> removeInputSourceState =
            &Engine::removeInputSourceState;
        std::function<platform::Task<Problems>(Engine&, bool needsAdmin)> removeApps =
            &Engine::removeApps;
        std::function<Problems(Engine&)> removeData = &Engine::removeData;
        std::function<Problems(Engine&)> resetPermissions = &Engine::resetPermissions;
        std::function<Problems(Engine&)> refreshSystemUI = &Engine::refreshSystemUI;
        std::function<platform::Task<Problems>(Engine&)> verify = &Engine::verify;
    };

    using Scan = std::function<platform::Task<UninstallInventory>()>;
    using LogSink = std::function<void(std::string_view line)>;

    /// With the real scan and log. Starts the scan.
    UninstallService();

    /// With other operations, for tests. Starts the scan.
    UninstallService(Operations operations, Scan scan, LogSink log);

    UninstallService(const UninstallService&) = delete;
    UninstallService& operator=(const UninstallService&) = delete;

    /// Calls the listener before each change of `phase` or `steps`, while it still has the old
    /// value.
    void onWillChange(std::function<void()> listener) { willChange_.listen(std::move(listener)); }

    [[nodiscard]] const Phase& phase() const { return publishedPhase_.value(); }

    /// Seven rows, in step order.
    [[nodiscard]] const std::vector<StepDisplay>& steps() const { return publishedSteps_.value(); }

    /// From 0 to 1.
    [[nodiscard]] double progressFraction() const { return kovra::progressFraction(steps()); }

    /// Starts a run with the first step, in any phase; does nothing while one is under way.
    void startUninstall();

    void openDownloadPage() const;

    void showLogInFinder() const;

  private:
    void startScan();
    platform::Task<void> scanAndPublish();

    platform::Task<void> awaitRunTask();
    platform::Task<void> run();

    /// Runs one step's operation. In the background.
    platform::Task<Problems> perform(UninstallStepID id, bool asAdmin) const;

    void stepEnded(UninstallStepID id, const Problems& problems);
    void finish(const Problems& residues);
    void failAtRemoveApps(const std::string& message);
    void setStep(UninstallStepID id, const StepState& state);

    ChangeNotice willChange_;
    Published<Phase> publishedPhase_{willChange_, phase::Scanning{}};
    Published<std::vector<StepDisplay>> publishedSteps_{willChange_, freshSteps()};
    const std::unique_ptr<UninstallEngine> engine = std::make_unique<UninstallEngine>();
    bool needsAdmin = false;

    /// The run in progress, if any.
    std::optional<platform::Task<void>> runTask;

    const Operations operations_;
    const Scan scan_;
    const LogSink log_;
};

} // namespace kovra
