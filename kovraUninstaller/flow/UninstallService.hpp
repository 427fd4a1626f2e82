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

/// Tells its listeners that something is about to change. Main thread.
class ChangeNotice {
  public:
    /// The listener is called before each change, while the old state still stands, and lives as
    /// long as the notice. It must not change the state itself.
    void listen(std::function<void()> listener) { listeners.push_back(std::move(listener)); }

    void announce() const {
        for (const auto& listener : listeners) {
            listener();
        }
    }

  private:
    std::vector<std::function<void()>> listeners;
};

/// A value each change of which is announced before it happens. Main thread.
template <class T>
class Published {
  public:
    Published(const ChangeNotice& notice, T initial)
        : notice(notice), current(std::move(initial)) {}

    [[nodiscard]] const T& value() const { return current; }

    void set(T replacement) {
        notice.announce();
        current = std::move(replacement);
    }

    /// Changes a part of the value: one announcement, whatever `change` does.
    template <class Change>
    void modify(Change change) {
        notice.announce();
        change(current);
    }

  private:
    const ChangeNotice& notice;
    T current;
};

/// Where people get the product again.
inline constexpr const char* downloadPageAddress = "https://kovra.example/download";

/// The whole run: the scan at the start, then, when people ask for it, the seven steps one after
/// the other. What the steps do happens in the background; the service itself lives on the main
/// thread, where all of it is to be called. It must not be destroyed while a scan or a run is
/// under way.
class UninstallService {
  public:
    using StepState = kovra::StepState;
    using StepDisplay = kovra::StepDisplay;
    using Phase = kovra::Phase;

    /// What the steps call, each in the background: the engine's own, unless replaced. Only
    /// `removeApps` may throw.
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

    /// With the real scan and the log. The scan starts at once.
    UninstallService();

    /// With other work behind the same flow.
    UninstallService(Operations operations, Scan scan, LogSink log);

    UninstallService(const UninstallService&) = delete;
    UninstallService& operator=(const UninstallService&) = delete;

    /// The listener is called before each change of `phase` or `steps`, while the old value still
    /// stands.
    void onWillChange(std::function<void()> listener) { willChange.listen(std::move(listener)); }

    [[nodiscard]] const Phase& phase() const { return publishedPhase.value(); }

    /// Seven rows, in step order.
    [[nodiscard]] const std::vector<StepDisplay>& steps() const { return publishedSteps.value(); }

    /// From 0 to 1, by the rows as they stand.
    [[nodiscard]] double progressFraction() const { return kovra::progressFraction(steps()); }

    /// Starts a run from the first step on, from whatever phase; nothing while one is under way.
    void startUninstall();

    void openDownloadPage() const;

    void showLogInFinder() const;

  private:
    void startScan();
    platform::Task<void> scanAndPublish();

    platform::Task<void> awaitRunTask();
    platform::Task<void> run();

    /// Does the work of one step. In the background.
    platform::Task<Problems> perform(UninstallStepID id, bool asAdmin) const;

    void stepEnded(UninstallStepID id, const Problems& problems);
    void finish(const Problems& residues);
    void failAtRemoveApps(const std::string& message);
    void setStep(UninstallStepID id, const StepState& state);

    ChangeNotice willChange;
    Published<Phase> publishedPhase{willChange, phase::Scanning{}};
    Published<std::vector<StepDisplay>> publishedSteps{willChange, freshSteps()};
    const std::unique_ptr<UninstallEngine> engine = std::make_unique<UninstallEngine>();
    bool needsAdmin = false;

    /// The run that is under way.
    std::optional<platform::Task<void>> runTask;

    const Operations operations;
    const Scan scan;
    const LogSink log;
};

} // namespace kovra
