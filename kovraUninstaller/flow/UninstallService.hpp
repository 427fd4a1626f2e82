#pragma once

#include "kovraUninstaller/engine/StepReport.hpp"
#include "kovraUninstaller/flow/Published.hpp"
#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"
#include "platform/base/Task.hpp"

#include <functional>
#include <string_view>

namespace kovra {

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

    /// What the steps call, each in the background. Only `removeApps` may throw.
    struct Operations {
        std::function<Problems()> stopProcesses;
        std::function<platform::Task<Problems>()> removeInputSourceState;
        std::function<platform::Task<Problems>(bool needsAdmin)> removeApps;
        std::function<Problems()> removeData;
        std::function<Problems()> resetPermissions;
        std::function<Problems()> refreshSystemUI;
        std::function<platform::Task<Problems>()> verify;
    };

    using Scan = std::function<platform::Task<UninstallInventory>()>;
    using LogSink = std::function<void(std::string_view line)>;

    /// With an engine of its own, the real scan and the log. The scan starts at once.
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

    platform::Task<void> runToItsEnd();
    platform::Task<void> run();

    /// Runs one operation in the background; the row says so meanwhile, and how it went after.
    template <class Operation>
    platform::Task<void> runStep(UninstallStepID id, Operation operation);

    void finish(const Problems& residues);
    void failAtRemoveApps(const std::string& message);
    void setStep(UninstallStepID id, const StepState& state);

    ChangeNotice willChange;
    Published<Phase> publishedPhase{willChange, phase::Scanning{}};
    Published<std::vector<StepDisplay>> publishedSteps{willChange, freshSteps()};
    const Operations operations;
    const Scan scan;
    const LogSink log;
    bool needsAdmin = false;
    bool runIsUnderWay = false;
};

} // namespace kovra
