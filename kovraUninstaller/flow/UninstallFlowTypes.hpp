#pragma once

#include "kovraUninstaller/inventory/UninstallInventory.hpp"

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kovra {

/// The seven steps of a removal. Declaration order is the order in which they run and the order
/// of their rows; the raw value, which is also the identity, is the case's name.
enum class UninstallStepID {
    stopProcesses,
    inputSource,
    removeApps,
    removeData,
    resetPermissions,
    refreshSystem,
    verify
};

template <>
struct CaseNames<UninstallStepID> {
    static constexpr std::array<std::pair<UninstallStepID, std::string_view>, 7> table{{
        {UninstallStepID::stopProcesses, "stopProcesses"},
        {UninstallStepID::inputSource, "inputSource"},
        {UninstallStepID::removeApps, "removeApps"},
        {UninstallStepID::removeData, "removeData"},
        {UninstallStepID::resetPermissions, "resetPermissions"},
        {UninstallStepID::refreshSystem, "refreshSystem"},
        {UninstallStepID::verify, "verify"},
    }};
};

/// The step's identity: its raw value. Any thread.
[[nodiscard]] constexpr std::string_view id(UninstallStepID step) {
    return rawValue(step);
}

/// The state of one step. Equal when the case and the text are.
class StepState {
  public:
    enum class Kind { pending, running, done, warning, failed };

    /// Not started.
    static StepState pending() { return {Kind::pending, {}}; }

    /// Its engine operation is under way.
    static StepState running() { return {Kind::running, {}}; }

    /// Ended without problems.
    static StepState done() { return {Kind::done, {}}; }

    /// Ended with problems; `lines` are all of them, joined by single spaces.
    static StepState warning(std::string lines) { return {Kind::warning, std::move(lines)}; }

    /// Threw; `message` is for the user.
    static StepState failed(std::string message) { return {Kind::failed, std::move(message)}; }

    [[nodiscard]] Kind kind() const { return kind_; }

    /// The text of a warning or a failure; empty for the other cases.
    [[nodiscard]] const std::string& text() const { return text_; }

    friend bool operator==(const StepState&, const StepState&) = default;

  private:
    StepState(Kind kind, std::string text) : kind_(kind), text_(std::move(text)) {}

    Kind kind_;
    std::string text_;
};

/// A step and its state. The page shows what the seven amount to, its progress bar.
struct StepDisplay {
    const UninstallStepID id;
    StepState state = StepState::pending();

    friend bool operator==(const StepDisplay&, const StepDisplay&) = default;
};

/// The seven steps in order, each pending.
[[nodiscard]] std::vector<StepDisplay> freshSteps();

/// Ended steps (done or warning) divided by all steps; 0 when there are none. All steps count the
/// same; a failed one does not count.
[[nodiscard]] double progressFraction(std::span<const StepDisplay> steps);

namespace phase {

/// The preflight scan is running.
struct Scanning {};

/// The scan found nothing, or nothing that is more than informational.
struct NothingFound {};

/// The scan found something to remove.
struct Ready {
    UninstallInventory inventory;
};

/// The steps are running.
struct Uninstalling {};

/// All steps ran; `residues` has a line for each item that is still there.
struct Done {
    std::vector<std::string> residues;
};

/// A step threw.
struct Failed {
    std::string stepTitle;
    std::string message;
};

} // namespace phase

/// The phase of the run. Default: `Scanning`.
using Phase = std::variant<phase::Scanning, phase::NothingFound, phase::Ready, phase::Uninstalling,
                           phase::Done, phase::Failed>;

/// A visitor made of one lambda for each case: `std::visit(Cases{...}, phase)`.
template <typename... Functions>
struct Cases : Functions... {
    using Functions::operator()...;
};

template <typename... Functions>
Cases(Functions...) -> Cases<Functions...>;

} // namespace kovra
