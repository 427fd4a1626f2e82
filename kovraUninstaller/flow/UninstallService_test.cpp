#include "kovraUninstaller/engine/EngineError.hpp"
#include "kovraUninstaller/flow/UninstallService.hpp"
#include "platform/services/MainQueue.hpp"
#include "platform/testing/OnMain.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <future>
#include <memory>
#include <mutex>
#include <thread>

namespace kovra {
namespace {

using platform::testing::onMain;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

platform::Task<Problems> resultOf(Problems problems) {
    co_return problems;
}

platform::Task<UninstallInventory> foundItems(UninstallInventory inventory) {
    co_return inventory;
}

InventoryItem item(const std::string& id, bool requiresAdmin, bool informational = false) {
    return {.id = id,
            .category = InventoryItem::Category::data,
            .title = id,
            .detail = "there",
            .requiresAdmin = requiresAdmin,
            .informational = informational};
}

// What each operation gives, and what was asked of them, in the order of the calls.
struct Script {
    Problems stopProcesses, removeInputSourceState, removeApps, removeData;
    Problems resetPermissions, refreshSystemUI, verify;
    std::function<void()> duringRemoveApps = [] {};
    std::function<void()> duringRemoveData = [] {};
};

class Recorder {
  public:
    void add(const std::string& line) {
        const std::scoped_lock lock(mutex);
        recorded.push_back(line);
    }

    [[nodiscard]] std::vector<std::string> lines() const {
        const std::scoped_lock lock(mutex);
        return recorded;
    }

  private:
    mutable std::mutex mutex;
    std::vector<std::string> recorded;
};

class Flow : public ::testing::Test {
  protected:
    ~Flow() override {
        onMain([this] { service.reset(); });
    }

    UninstallService::Operations operations() {
        return {
            .stopProcesses = [this] { return called("stopProcesses", script.stopProcesses); },
            .removeInputSourceState =
                [this] {
                    return resultOf(
                        called("removeInputSourceState", script.removeInputSourceState));
                },
            .removeApps =
                [this](bool needsAdmin) {
                    const char* name = needsAdmin ? "removeApps(admin)" : "removeApps()";
                    Problems problems = called(name, script.removeApps);
                    script.duringRemoveApps();
                    return resultOf(problems);
                },
            .removeData =
                [this] {
                    script.duringRemoveData();
                    return called("removeData", script.removeData);
                },
            .resetPermissions =
                [this] { return called("resetPermissions", script.resetPermissions); },
            .refreshSystemUI = [this] { return called("refreshSystemUI", script.refreshSystemUI); },
            .verify = [this] { return resultOf(called("verify", script.verify)); },
        };
    }

    Problems called(const std::string& name, const Problems& problems) {
        EXPECT_FALSE(platform::isMainThread()) << name;
        calls.add(name);
        return problems;
    }

    void createService() {
        onMain([this] {
            service = std::make_unique<UninstallService>(
                operations(),
                [this] {
                    EXPECT_FALSE(platform::isMainThread()) << "scan";
                    return foundItems(inventory);
                },
                [this](std::string_view line) {
                    EXPECT_TRUE(platform::isMainThread()) << line;
                    log.add(std::string(line));
                });
            service->onWillChange([] { EXPECT_TRUE(platform::isMainThread()); });
            EXPECT_TRUE(std::holds_alternative<phase::Scanning>(service->phase()));
        });
        waitUntil([this] { return !std::holds_alternative<phase::Scanning>(service->phase()); });
    }

    void startUninstall() {
        onMain([this] { service->startUninstall(); });
    }

    void runToTheEnd() {
        startUninstall();
        waitForTheEnd();
    }

    void waitForTheEnd() {
        waitUntil(
            [this] { return !std::holds_alternative<phase::Uninstalling>(service->phase()); });
        // The guard against a second run falls when the run has returned, a moment later.
        onMain([] {});
    }

    template <class Condition>
    void waitUntil(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!onMain(condition)) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    std::vector<StepState> states() {
        return onMain([this] {
            std::vector<StepState> result;
            for (const StepDisplay& row : service->steps()) {
                result.push_back(row.state);
            }
            return result;
        });
    }

    template <class Wanted>
    Wanted phaseAs() {
        return onMain([this] { return std::get<Wanted>(service->phase()); });
    }

    Script script;
    UninstallInventory inventory{{item("found", false)}};
    Recorder calls;
    Recorder log;
    std::unique_ptr<UninstallService> service;
};

using S = StepState;

TEST_F(Flow, IsReadyWithTheInventoryWhenTheScanFoundSomething) {
    createService();
    EXPECT_EQ(phaseAs<phase::Ready>().inventory, inventory);
    EXPECT_THAT(states(), ElementsAre(S::pending(), S::pending(), S::pending(), S::pending(),
                                      S::pending(), S::pending(), S::pending()));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Flow, FoundNothingWhenThereIsNothing) {
    inventory = {};
    createService();
    phaseAs<phase::NothingFound>();
}

TEST_F(Flow, FoundNothingWhenAllIsInformationalAndStillAsksForAnAdministratorWhenMarked) {
    inventory = {{item("informational", true, true)}};
    createService();
    phaseAs<phase::NothingFound>();
    runToTheEnd();
    EXPECT_EQ(calls.lines().at(2), "removeApps(admin)");
}

TEST_F(Flow, RunsTheSevenStepsInOrderAndEndsClean) {
    createService();
    runToTheEnd();
    EXPECT_THAT(calls.lines(),
                ElementsAre("stopProcesses", "removeInputSourceState", "removeApps()", "removeData",
                            "resetPermissions", "refreshSystemUI", "verify"));
    EXPECT_THAT(states(), ElementsAre(S::done(), S::done(), S::done(), S::done(), S::done(),
                                      S::done(), S::done()));
    EXPECT_THAT(phaseAs<phase::Done>().residues, IsEmpty());
    EXPECT_EQ(onMain([this] { return service->progressFraction(); }), 1.0);
    EXPECT_THAT(log.lines(), ElementsAre("Uninstall started", "Uninstall finished (residues: 0)"));
}

TEST_F(Flow, AsksForAnAdministratorWhenOneItemNeedsOne) {
    inventory = {{item("mine", false), item("system", true)}};
    createService();
    runToTheEnd();
    EXPECT_EQ(calls.lines().at(2), "removeApps(admin)");
}

TEST_F(Flow, TurnsReportedLinesIntoOneWarningAndGoesOn) {
    script.stopProcesses = {"One.", "Two words. "};
    script.removeApps = {"Could not remove x."};
    createService();
    runToTheEnd();
    EXPECT_THAT(states(), ElementsAre(S::warning("One. Two words. "), S::done(),
                                      S::warning("Could not remove x."), S::done(), S::done(),
                                      S::done(), S::done()));
    EXPECT_THAT(log.lines(), ElementsAre("Uninstall started", "Uninstall finished (residues: 0)"));
}

TEST_F(Flow, TellsResiduesByThePhaseAndNotByTheRow) {
    script.verify = {"A (a)", "B (b)"};
    createService();
    runToTheEnd();
    EXPECT_EQ(states().back(), S::done());
    EXPECT_THAT(phaseAs<phase::Done>().residues, ElementsAre("A (a)", "B (b)"));
    EXPECT_EQ(log.lines().back(), "Uninstall finished (residues: 2)");
}

TEST_F(Flow, StopsWhenTheAdministratorSaysNo) {
    script.stopProcesses = {"Line."};
    script.duringRemoveApps = [] { throw EngineError::adminCancelled(); };
    createService();
    runToTheEnd();
    constexpr const char* message = "Administrator access was not granted.";
    EXPECT_THAT(states(), ElementsAre(S::warning("Line."), S::done(), S::failed(message),
                                      S::pending(), S::pending(), S::pending(), S::pending()));
    EXPECT_EQ(phaseAs<phase::Failed>().stepTitle, "Remove kovra apps");
    EXPECT_EQ(phaseAs<phase::Failed>().message, message);
    EXPECT_EQ(onMain([this] { return service->progressFraction(); }), 2.0 / 7.0);
    EXPECT_THAT(log.lines(), ElementsAre("Uninstall started",
                                         "Uninstall failed at Remove kovra apps: Administrator "
                                         "access was not granted."));
    EXPECT_THAT(calls.lines(),
                ElementsAre("stopProcesses", "removeInputSourceState", "removeApps()"));
}

TEST_F(Flow, ShowsTheSentenceOfAFailure) {
    script.duringRemoveApps = [] { throw EngineError::failed("A whole sentence."); };
    createService();
    runToTheEnd();
    EXPECT_EQ(phaseAs<phase::Failed>().message, "A whole sentence.");
    EXPECT_EQ(states().at(2), S::failed("A whole sentence."));
}

TEST_F(Flow, ShowsWhatAnyOtherErrorSaysOfItself) {
    script.duringRemoveApps = [] { throw std::runtime_error("something else"); };
    createService();
    runToTheEnd();
    EXPECT_EQ(phaseAs<phase::Failed>().message, "something else");
}

TEST_F(Flow, CallsAnErrorThatSaysNothingUnknown) {
    script.duringRemoveApps = [] { throw 42; };
    createService();
    runToTheEnd();
    EXPECT_EQ(phaseAs<phase::Failed>().message, "Unknown error");
}

TEST_F(Flow, RetriesFromTheFirstStepOnAfterAFailure) {
    script.duringRemoveApps = [] { throw EngineError::adminCancelled(); };
    createService();
    runToTheEnd();
    script.duringRemoveApps = [] {};
    onMain([this] {
        service->startUninstall();
        EXPECT_TRUE(std::holds_alternative<phase::Uninstalling>(service->phase()));
        EXPECT_EQ(service->steps(), freshSteps());
    });
    waitForTheEnd();
    EXPECT_THAT(states(), ElementsAre(S::done(), S::done(), S::done(), S::done(), S::done(),
                                      S::done(), S::done()));
    EXPECT_EQ(calls.lines().size(), 3U + 7U);
    EXPECT_EQ(calls.lines().at(3), "stopProcesses");
    EXPECT_EQ(log.lines().at(2), "Uninstall started");
    EXPECT_EQ(log.lines().back(), "Uninstall finished (residues: 0)");
}

TEST_F(Flow, IgnoresASecondPressWhileTheStepsRun) {
    std::promise<void> mayGoOn;
    auto goOn = mayGoOn.get_future().share();
    script.duringRemoveData = [goOn] { goOn.wait(); };
    createService();
    startUninstall();
    waitUntil([this] { return service->steps()[3].state == S::running(); });
    startUninstall();
    EXPECT_THAT(states(), ElementsAre(S::done(), S::done(), S::done(), S::running(), S::pending(),
                                      S::pending(), S::pending()));
    mayGoOn.set_value();
    waitForTheEnd();
    EXPECT_EQ(calls.lines().size(), 7U);
    EXPECT_THAT(log.lines(), ElementsAre("Uninstall started", "Uninstall finished (residues: 0)"));
}

TEST_F(Flow, IgnoresASecondPressInTheSameMoment) {
    createService();
    onMain([this] {
        service->startUninstall();
        service->startUninstall();
    });
    waitForTheEnd();
    EXPECT_EQ(calls.lines().size(), 7U);
}

// Each change is announced once, while the old state still stands.
TEST_F(Flow, AnnouncesEveryChangeBeforeItHappens) {
    createService();
    std::vector<long> sevenths;
    onMain([&] {
        service->onWillChange(
            [&] { sevenths.push_back(std::lround(7 * service->progressFraction())); });
        service->startUninstall();
    });
    waitForTheEnd();
    // Fresh rows and the phase, each row as it starts and ends, the phase.
    EXPECT_THAT(sevenths, ElementsAre(0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7));
}

TEST_F(Flow, NeverShowsMoreThanOneRunningRow) {
    createService();
    onMain([this] {
        service->onWillChange([this] {
            EXPECT_LE(std::ranges::count(service->steps(), S::running(), &StepDisplay::state), 1);
        });
    });
    runToTheEnd();
}

} // namespace
} // namespace kovra
