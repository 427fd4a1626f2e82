#include "kovraUninstaller/flow/UninstallService.hpp"

#include "kovraUninstaller/engine/UninstallEngine.hpp"
#include "kovraUninstaller/inventory/InventoryScanner.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/services/Async.hpp"
#include "platform/services/Workspace.hpp"

#include <algorithm>
#include <memory>
#include <string>

namespace kovra {

namespace {

constexpr const char* removeAppsTitle = "Remove kovra apps";

UninstallService::Operations operationsOf(const std::shared_ptr<UninstallEngine>& engine) {
    return {
        .stopProcesses = [engine] { return engine->stopProcesses(); },
        .removeInputSourceState = [engine] { return engine->removeInputSourceState(); },
        .removeApps = [engine](bool needsAdmin) { return engine->removeApps(needsAdmin); },
        .removeData = [engine] { return engine->removeData(); },
        .resetPermissions = [engine] { return engine->resetPermissions(); },
        .refreshSystemUI = [engine] { return engine->refreshSystemUI(); },
        .verify = [engine] { return engine->verify(); },
    };
}

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

std::string messageFor(const EngineError& error) {
    return error.kind() == EngineError::Kind::adminCancelled
               ? "Administrator access was not granted."
               : error.what();
}

} // namespace

UninstallService::UninstallService()
    : UninstallService(operationsOf(std::make_shared<UninstallEngine>()), InventoryScanner::scan,
                       UninstallerLog::file) {}

UninstallService::UninstallService(Operations operations, Scan scan, LogSink log)
    : operations(std::move(operations)), scan(std::move(scan)), log(std::move(log)) {
    startScan();
}

void UninstallService::startScan() {
    publishedPhase.set(phase::Scanning{});
    platform::start(scanAndPublish());
}

platform::Task<void> UninstallService::scanAndPublish() {
    UninstallInventory inventory = co_await platform::runInBackground(scan);
    needsAdmin = std::ranges::any_of(inventory.items, &InventoryItem::requiresAdmin);
    const bool anythingToRemove =
        !std::ranges::all_of(inventory.items, &InventoryItem::informational);
    if (anythingToRemove) {
        publishedPhase.set(phase::Ready{std::move(inventory)});
    } else {
        publishedPhase.set(phase::NothingFound{});
    }
}

void UninstallService::startUninstall() {
    if (runIsUnderWay) {
        return;
    }
    runIsUnderWay = true;
    publishedSteps.set(freshSteps());
    publishedPhase.set(phase::Uninstalling{});
    log("Uninstall started");
    platform::start(runToItsEnd());
}

platform::Task<void> UninstallService::runToItsEnd() {
    co_await platform::resumeOn(platform::mainQueue());
    co_await run();
    runIsUnderWay = false;
}

platform::Task<void> UninstallService::run() {
    const auto removeApps = [this, needsAdmin = needsAdmin] {
        return operations.removeApps(needsAdmin);
    };
    co_await runStep(UninstallStepID::stopProcesses, operations.stopProcesses);
    co_await runStep(UninstallStepID::inputSource, operations.removeInputSourceState);
    try {
        co_await runStep(UninstallStepID::removeApps, removeApps);
    } catch (const EngineError& error) {
        failAtRemoveApps(messageFor(error));
        co_return;
    } catch (const std::exception& error) {
        failAtRemoveApps(error.what());
        co_return;
    } catch (...) {
        failAtRemoveApps("Unknown error");
        co_return;
    }
    co_await runStep(UninstallStepID::removeData, operations.removeData);
    co_await runStep(UninstallStepID::resetPermissions, operations.resetPermissions);
    co_await runStep(UninstallStepID::refreshSystem, operations.refreshSystemUI);
    setStep(UninstallStepID::verify, StepState::running());
    finish(co_await platform::runInBackground(operations.verify));
}

template <class Operation>
platform::Task<void> UninstallService::runStep(UninstallStepID id, Operation operation) {
    setStep(id, StepState::running());
    const Problems problems = co_await platform::runInBackground(operation);
    setStep(id, stateAfter(problems));
}

// What is left over is told by the phase and not by the row.
void UninstallService::finish(const Problems& residues) {
    setStep(UninstallStepID::verify, StepState::done());
    publishedPhase.set(phase::Done{residues});
    log("Uninstall finished (residues: " + std::to_string(residues.size()) + ")");
}

void UninstallService::failAtRemoveApps(const std::string& message) {
    setStep(UninstallStepID::removeApps, StepState::failed(message));
    publishedPhase.set(phase::Failed{removeAppsTitle, message});
    log(std::string("Uninstall failed at ") + removeAppsTitle + ": " + message);
}

void UninstallService::setStep(UninstallStepID id, const StepState& state) {
    const auto row = std::ranges::find(steps(), id, &StepDisplay::id);
    if (row == steps().end()) {
        return;
    }
    const auto index = row - steps().begin();
    publishedSteps.modify([&](auto& rows) { rows[static_cast<std::size_t>(index)].state = state; });
}

void UninstallService::openDownloadPage() const {
    platform::openAddress(downloadPageAddress);
}

void UninstallService::showLogInFinder() const {
    platform::revealFile(UninstallerLog::logFile());
}

} // namespace kovra
