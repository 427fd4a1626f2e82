#include "kovraUninstaller/flow/testing/FlowFixture.hpp"

#include <cmath>
#include <future>

namespace kovra {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using testing::Flow;
using ::testing::IsEmpty;
using testing::item;
using testing::onMain;

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

TEST_F(Flow, ShowsASentenceWholeWhateverIsInIt) {
    const std::string sentence = "It said: \0 and \n."s;
    script.duringRemoveApps = [&] { throw EngineError::failed(sentence); };
    createService();
    runToTheEnd();
    EXPECT_EQ(phaseAs<phase::Failed>().message, sentence);
    EXPECT_EQ(states().at(2), S::failed(sentence));
    EXPECT_EQ(log.lines().back(), "Uninstall failed at Remove kovra apps: " + sentence);
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

// Listeners are notified of each change once, while the value is still the old one.
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

// All events in order: what was shown before each change, each call, each log line. A row is shown
// by the first letter of its state.
class Order : public Flow {
  protected:
    std::string eventsOfRun() {
        const std::size_t before = events.lines().size();
        runToTheEnd();
        std::string own = "\n";
        const std::vector<std::string> all = events.lines();
        for (std::size_t i = before; i < all.size(); ++i) {
            own += all[i] + "\n";
        }
        return own;
    }
};

TEST_F(Order, OfASuccess) {
    script.removeData = {"Could not remove x."};
    script.verify = {"A (a)"};
    createService();
    EXPECT_EQ(eventsOfRun(), R"(
ready ppppppp
ready ppppppp
uninstalling ppppppp logs Uninstall started
uninstalling ppppppp
stopProcesses
uninstalling rpppppp
uninstalling dpppppp
removeInputSourceState
uninstalling drppppp
uninstalling ddppppp
removeApps()
uninstalling ddrpppp
uninstalling dddpppp
removeData
uninstalling dddrppp
uninstalling dddwppp
resetPermissions
uninstalling dddwrpp
uninstalling dddwdpp
refreshSystemUI
uninstalling dddwdrp
uninstalling dddwddp
verify
uninstalling dddwddr
uninstalling dddwddd
done dddwddd logs Uninstall finished (residues: 1)
)");
}

TEST_F(Order, OfAFailure) {
    script.duringRemoveApps = [] { throw EngineError::adminCancelled(); };
    createService();
    EXPECT_EQ(eventsOfRun(), R"(
ready ppppppp
ready ppppppp
uninstalling ppppppp logs Uninstall started
uninstalling ppppppp
stopProcesses
uninstalling rpppppp
uninstalling dpppppp
removeInputSourceState
uninstalling drppppp
uninstalling ddppppp
removeApps()
uninstalling ddrpppp
uninstalling ddfpppp
failed ddfpppp logs Uninstall failed at Remove kovra apps: Administrator access was not granted.
)");
}

TEST_F(Order, OfARetry) {
    script.duringRemoveApps = [] { throw EngineError::adminCancelled(); };
    createService();
    runToTheEnd();
    EXPECT_TRUE(eventsOfRun().starts_with(R"(
failed ddfpppp
failed ppppppp
uninstalling ppppppp logs Uninstall started
uninstalling ppppppp
stopProcesses
)"));
}

} // namespace
} // namespace kovra
