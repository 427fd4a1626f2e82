#include "kovraUninstaller/flow/UninstallService.hpp"

#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/services/Async.hpp"
#include "platform/services/Workspace.hpp"

#include <algorithm>
#include <string>

namespace kovra {

namespace {

constexpr const char* removeAppsTitle = "Remove kovra apps";

StepState stateAfter(const Problems& problems) {
    if (problems.empty()) {
        return StepState::done();
    }
    std::string lines = problems.front();
    for (std::size_t i = 1; i < problems.size(); ++i) {
        lines.append(" ").append(problems[i]);
    }
    return StepState::warning(std::move(lines));
}

// The message for the user of the exception being handled.
std::string messageOfFailure() {
    try {
        throw;
    } catch (const EngineError& error) {
        return error.kind() == EngineError::Kind::adminCancelled
                   ? "Administrator access was not granted."
                   : error.text();
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "Unknown error";
    }
}

} // namespace

UninstallService::UninstallService()
    : UninstallService(Operations(), InventoryScanner::scan, UninstallerLog::file) {}

UninstallService::UninstallService(Operations operations, Scan scan, LogSink log)
    : operations_(std::move(operations)), scan_(std::move(scan)), log_(std::move(log)) {
    startScan();
}

void UninstallService::startScan() {
    publishedPhase_.set(phase::Scanning{});
    platform::start(scanAndPublish());
}

platform::Task<void> UninstallService::scanAndPublish() {
    UninstallInventory inventory = co_await platform::runInBackground(scan_);
    needsAdmin = std::ranges::any_of(inventory.items, &InventoryItem::requiresAdmin);
    const bool anythingToRemove =
        !std::ranges::all_of(inventory.items, &InventoryItem::informational);
    if (anythingToRemove) {
        publishedPhase_.set(phase::Ready{std::move(inventory)});
    } else {
        publishedPhase_.set(phase::NothingFound{});
    }
}

void UninstallService::startUninstall() {
    if (runTask) {
        return;
    }
    publishedSteps_.set(freshSteps());
    publishedPhase_.set(phase::Uninstalling{});
    log_("Uninstall started");
    runTask = run();
    platform::start(awaitRunTask());
}

platform::Task<void> UninstallService::awaitRunTask() {
    co_await platform::resumeOn(platform::mainQueue());
    co_await *runTask;
    runTask.reset();
}

platform::Task<void> UninstallService::run() {
    const bool asAdmin = needsAdmin;
    for (const UninstallStepID id : allCases<UninstallStepID>) {
        setStep(id, StepState::running());
        Problems problems;
        try {
            problems = co_await platform::runInBackground(
                [this, id, asAdmin] { return perform(id, asAdmin); });
        } catch (...) {
            if (id != UninstallStepID::removeApps) {
                throw;
            }
            failAtRemoveApps(messageOfFailure());
            co_return;
        }
        stepEnded(id, problems);
    }
}

platform::Task<Problems> UninstallService::perform(UninstallStepID id, bool asAdmin) const {
    switch (id) {
    case UninstallStepID::stopProcesses: co_return operations_.stopProcesses(*engine);
    case UninstallStepID::inputSource:
        co_return co_await operations_.removeInputSourceState(*engine);
    case UninstallStepID::removeApps: co_return co_await operations_.removeApps(*engine, asAdmin);
    case UninstallStepID::removeData: co_return operations_.removeData(*engine);
    case UninstallStepID::resetPermissions: co_return operations_.resetPermissions(*engine);
    case UninstallStepID::refreshSystem: co_return operations_.refreshSystemUI(*engine);
    case UninstallStepID::verify: co_return co_await operations_.verify(*engine);
    }
    co_return {};
}

void UninstallService::stepEnded(UninstallStepID id, const Problems& problems) {
    if (id == UninstallStepID::verify) {
        finish(problems);
    } else {
        setStep(id, stateAfter(problems));
    }
}

// The phase has the residues; the step `verify` is done in any case.
void UninstallService::finish(const Problems& residues) {
    setStep(UninstallStepID::verify, StepState::done());
    publishedPhase_.set(phase::Done{residues});
    log_("Uninstall finished (residues: " + std::to_string(residues.size()) + ")");
}

void UninstallService::failAtRemoveApps(const std::string& message) {
    setStep(UninstallStepID::removeApps, StepState::failed(message));
    publishedPhase_.set(phase::Failed{removeAppsTitle, message});
    log_(std::string("Uninstall failed at ") + removeAppsTitle + ": " + message);
}

void UninstallService::setStep(UninstallStepID id, const StepState& state) {
    const auto row = std::ranges::find(steps(), id, &StepDisplay::id);
    if (row == steps().end()) {
        return;
    }
    const auto index = row - steps().begin();
    publishedSteps_.modify(
        [&](auto& rows) { rows[static_cast<std::size_t>(index)].state = state; });
}

void UninstallService::openDownloadPage() const {
    platform::openAddress(downloadPageAddress);
}

void UninstallService::showLogInFinder() const {
    platform::revealFile(UninstallerLog::logFile());
}

} // namespace kovra
