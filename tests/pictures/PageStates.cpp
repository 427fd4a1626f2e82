#include "tests/pictures/PageStates.hpp"

#include <vector>

namespace kovra {

namespace {

constexpr const char* refused = "Administrator access was not granted.";
constexpr const char* damaged =
    "The uninstaller is damaged (missing uninstall.sh). Please download it again.";
constexpr const char* notPermitted =
    "Privileged removal failed: rm: /Applications/kovra.app: Operation not permitted";
constexpr const char* longReason =
    "Privileged removal failed: rm: /Library/Input Methods/kovraInput.app: Operation not "
    "permitted. "
    "The Mac is managed by an organisation, and its profile forbids to change what lies in "
    "/Library/Input Methods. Ask the people who look after this Mac to lift the restriction, then "
    "press Retry; what was removed so far stays removed.";

std::vector<PicturedState> made() {
    const Phase done = phase::Done{};
    const Phase residues = phase::Done{{"Could not remove /Users/sam/Library/Caches/kovra."}};
    const Phase failed = phase::Failed{"Remove kovra apps", refused};
    return {
        {"scanning", phase::Scanning{}},
        {"ready", phase::Ready{}},
        {"ready-focused", phase::Ready{}, 0, {}, "Uninstall"},
        {"nothing-found", phase::NothingFound{}},
        {"nothing-found-hovered", phase::NothingFound{}, 0, "Clean up anyway"},
        {"nothing-found-button-focused", phase::NothingFound{}, 0, {}, "Quit"},
        {"nothing-found-link-focused", phase::NothingFound{}, 0, {}, "Clean up anyway"},
        {"uninstalling-0", phase::Uninstalling{}, 0},
        {"uninstalling-2", phase::Uninstalling{}, 2.0 / 7},
        {"uninstalling-4", phase::Uninstalling{}, 4.0 / 7},
        {"uninstalling-6", phase::Uninstalling{}, 6.0 / 7},
        {"done", done},
        {"done-hovered", done, 0, "Download kovra again"},
        {"done-focused", done, 0, {}, "Download kovra again"},
        {"residues", residues},
        {"residues-hovered", residues, 0, "Show Log"},
        {"failed", failed},
        {"failed-damaged", phase::Failed{"Remove kovra apps", damaged}},
        {"failed-not-permitted", phase::Failed{"Remove kovra apps", notPermitted}},
        {"failed-long", phase::Failed{"Remove kovra apps", longReason}},
    };
}

} // namespace

std::span<const PicturedState> pageStates() {
    static const std::vector<PicturedState> states = made();
    return states;
}

} // namespace kovra
