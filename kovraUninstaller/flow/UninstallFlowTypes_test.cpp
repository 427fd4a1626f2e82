#include "kovraUninstaller/flow/UninstallFlowTypes.hpp"

#include <gmock/gmock.h>

#include <algorithm>

namespace kovra {
namespace {

using ::testing::ElementsAre;

std::vector<StepDisplay> rowsWith(const std::vector<StepState>& states) {
    std::vector<StepDisplay> rows = freshSteps();
    for (std::size_t i = 0; i < states.size(); ++i) {
        rows.at(i).state = states[i];
    }
    return rows;
}

TEST(UninstallStepID, ComesInRunningOrderWithItsNameAsRawValue) {
    std::array<std::string_view, 7> names;
    std::ranges::transform(allCases<UninstallStepID>, names.begin(), rawValue<UninstallStepID>);
    EXPECT_THAT(names, ElementsAre("stopProcesses", "inputSource", "removeApps", "removeData",
                                   "resetPermissions", "refreshSystem", "verify"));
}

TEST(UninstallStepID, IsIdentifiedByItsRawValue) {
    for (const UninstallStepID step : allCases<UninstallStepID>) {
        EXPECT_EQ(id(step), rawValue(step));
    }
}

TEST(UninstallStepID, IsFoundByItsRawValueAndNotByItsOperationsName) {
    EXPECT_EQ(fromRawValue<UninstallStepID>("refreshSystem"), UninstallStepID::refreshSystem);
    EXPECT_EQ(fromRawValue<UninstallStepID>("refreshSystemUI"), std::nullopt);
    EXPECT_EQ(fromRawValue<UninstallStepID>(""), std::nullopt);
}

TEST(StepState, EqualsOnlyTheSameCaseWithTheSameText) {
    EXPECT_EQ(StepState::warning("a"), StepState::warning("a"));
    EXPECT_NE(StepState::warning("a"), StepState::warning("b"));
    EXPECT_NE(StepState::warning("a"), StepState::failed("a"));
    EXPECT_NE(StepState::pending(), StepState::running());
    EXPECT_EQ(StepState::done(), StepState::done());
}

TEST(FreshSteps, AreSevenPendingRowsInRunningOrder) {
    const std::vector<StepDisplay> rows = freshSteps();
    ASSERT_EQ(rows.size(), 7U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].id, allCases<UninstallStepID>[i]);
        EXPECT_EQ(rows[i].state, StepState::pending());
    }
}

TEST(ProgressFraction, IsZeroWithoutRows) {
    EXPECT_EQ(progressFraction({}), 0.0);
}

TEST(ProgressFraction, CountsAWarningAsMuchAsACleanStep) {
    EXPECT_EQ(progressFraction(
                  rowsWith({StepState::done(), StepState::warning("lines"), StepState::running()})),
              2.0 / 7.0);
    EXPECT_EQ(progressFraction(rowsWith({StepState::warning("lines")})),
              progressFraction(rowsWith({StepState::done()})));
}

TEST(ProgressFraction, NeverCountsAFailedRow) {
    EXPECT_EQ(progressFraction(
                  rowsWith({StepState::done(), StepState::done(), StepState::failed("message")})),
              2.0 / 7.0);
}

TEST(ProgressFraction, IsOneWhenEveryRowHasEnded) {
    EXPECT_EQ(progressFraction(rowsWith(std::vector<StepState>(7, StepState::done()))), 1.0);
}

TEST(Phase, BeginsWithTheScan) {
    EXPECT_TRUE(std::holds_alternative<phase::Scanning>(Phase{}));
}

} // namespace
} // namespace kovra
