#pragma once

#include "kovraUninstaller/flow/UninstallService.hpp"
#include "platform/services/Queues.hpp"
#include "platform/testing/OnMain.hpp"

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kovra::testing {

using platform::testing::onMain;

inline platform::Task<Problems> resultOf(Problems problems) {
    co_return problems;
}

inline platform::Task<UninstallInventory> foundItems(UninstallInventory inventory) {
    co_return inventory;
}

inline InventoryItem item(const std::string& id, bool requiresAdmin, bool informational = false) {
    return {.id = id,
            .category = InventoryItem::Category::data,
            .title = id,
            .detail = "there",
            .requiresAdmin = requiresAdmin,
            .informational = informational};
}

/// What each operation returns, and what it does meanwhile.
struct Script {
    Problems stopProcesses, removeInputSourceState, removeApps, removeData;
    Problems resetPermissions, refreshSystemUI, verify;
    std::function<void()> duringRemoveApps = [] {};
    std::function<void()> duringRemoveData = [] {};
};

/// Lines from any thread, in the order in which they came.
class Recorder {
  public:
    void add(const std::string& line) {
        const std::scoped_lock lock(mutex_);
        recorded_.push_back(line);
    }

    [[nodiscard]] std::vector<std::string> lines() const {
        const std::scoped_lock lock(mutex_);
        return recorded_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> recorded_;
};

/// A service whose scan and steps do what the test says, on a main thread that serves its queue.
class Flow : public ::testing::Test {
  protected:
    ~Flow() override {
        onMain([this] { service.reset(); });
    }

    UninstallService::Operations operations() {
        using Engine = UninstallEngine;
        return {
            .stopProcesses =
                [this](Engine& engine) {
                    return called(engine, "stopProcesses", script.stopProcesses);
                },
            .removeInputSourceState =
                [this](Engine& engine) {
                    return resultOf(
                        called(engine, "removeInputSourceState", script.removeInputSourceState));
                },
            .removeApps =
                [this](Engine& engine, bool needsAdmin) {
                    const char* name = needsAdmin ? "removeApps(admin)" : "removeApps()";
                    Problems problems = called(engine, name, script.removeApps);
                    script.duringRemoveApps();
                    return resultOf(problems);
                },
            .removeData =
                [this](Engine& engine) {
                    script.duringRemoveData();
                    return called(engine, "removeData", script.removeData);
                },
            .resetPermissions =
                [this](Engine& engine) {
                    return called(engine, "resetPermissions", script.resetPermissions);
                },
            .refreshSystemUI =
                [this](Engine& engine) {
                    return called(engine, "refreshSystemUI", script.refreshSystemUI);
                },
            .verify =
                [this](Engine& engine) {
                    return resultOf(called(engine, "verify", script.verify));
                },
        };
    }

    // All calls are of one engine, in the background.
    Problems called(const UninstallEngine& engine, const std::string& name,
                    const Problems& problems) {
        EXPECT_FALSE(platform::isMainThread()) << name;
        EXPECT_TRUE(theEngine == nullptr || theEngine == &engine) << name;
        theEngine = &engine;
        calls.add(name);
        events.add(name);
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
                    events.add(onDisplay() + " logs " + std::string(line));
                });
            service->onWillChange([this] {
                EXPECT_TRUE(platform::isMainThread());
                events.add(onDisplay());
            });
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
        // A new run is possible only once the run has returned, one turn of the main queue later.
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

    // The phase, and the first letter of each row's state.
    std::string onDisplay() const {
        constexpr const char* phases[] = {"scanning",     "nothing found", "ready",
                                          "uninstalling", "done",          "failed"};
        std::string text = std::string(phases[service->phase().index()]) + " ";
        for (const StepDisplay& row : service->steps()) {
            text += "prdwf"[static_cast<std::size_t>(row.state.kind())];
        }
        return text;
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
    Recorder events; ///< calls, log lines, and what was shown before each change
    const UninstallEngine* theEngine = nullptr;
    std::unique_ptr<UninstallService> service;
};

} // namespace kovra::testing
