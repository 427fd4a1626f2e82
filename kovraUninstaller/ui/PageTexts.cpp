#include "kovraUninstaller/ui/PageTexts.hpp"

namespace kovra {

namespace {

constexpr const char* offer = "Uninstall kovra";
constexpr const char* offerExplained =
    "This removes kovra from this Mac, including your sign-in and settings.";

} // namespace

std::string title(const Phase& phase) {
    return std::visit(
        Cases{
            [](const phase::Scanning&) -> std::string { return offer; },
            [](const phase::Ready&) -> std::string { return offer; },
            [](const phase::Uninstalling&) -> std::string { return offer; },
            [](const phase::NothingFound&) -> std::string { return "kovra was not found"; },
            [](const phase::Done& done) -> std::string {
                return done.residues.empty() ? "Goodbye." : "kovra was removed";
            },
            [](const phase::Failed&) -> std::string { return "Couldn't finish uninstalling"; },
        },
        phase);
}

std::string subtitle(const Phase& phase) {
    return std::visit(
        Cases{
            [](const phase::Scanning&) -> std::string { return offerExplained; },
            [](const phase::Ready&) -> std::string { return offerExplained; },
            // Said whether or not administrator rights turn out to be needed.
            [](const phase::Uninstalling&) -> std::string {
                return "Your Mac may ask for your password to remove kovra from the system Input "
                       "Methods folder.";
            },
            [](const phase::NothingFound&) -> std::string {
                return "There is nothing to remove on this Mac.";
            },
            [](const phase::Done& done) -> std::string {
                return done.residues.empty() ? "kovra was removed. Thanks for giving it a try."
                                             : "Some items could not be removed. Restarting your "
                                               "Mac usually clears them.";
            },
            [](const phase::Failed& failed) { return failed.stepTitle + ": " + failed.message; },
        },
        phase);
}

std::string announcementOf(const Phase& phase) {
    const std::string first = title(phase);
    return first + (first.ends_with('.') ? " " : ". ") + subtitle(phase);
}

} // namespace kovra
